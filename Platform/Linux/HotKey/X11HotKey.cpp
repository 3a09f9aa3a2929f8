#include "Platform/Linux/HotKey/X11HotKey.h"
#include "Platform/Linux/HotKey/KeySymbols.h"
#include <QGuiApplication>
#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb_keysyms.h>

using namespace std::chrono_literals;

namespace {

constexpr auto layoutSettleTime = 100ms; // one change of the layout comes as a burst of events

// A grab holds for exactly one state of the locks; a person does not think of them.
constexpr std::array<std::uint16_t, 4> lockStates{
    0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};
constexpr std::uint16_t keyboardModifiers = 0xff; // above it the pointer's buttons begin
constexpr std::uint16_t locks = XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2;

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};
template <class T> using Reply = std::unique_ptr<T, FreeReply>;

std::uint8_t firstKeyboardEvent(xcb_connection_t *connection)
{
    constexpr std::string_view name = "XKEYBOARD";
    const auto query = xcb_query_extension(connection, name.size(), name.data());
    const Reply<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(connection, query, nullptr));
    return reply && reply->present != 0 ? reply->first_event : 0;
}

// Read afresh each time: the table keeps the layout of the moment at which it was made.
QList<xcb_keycode_t> keyCodesFor(xcb_connection_t *connection, std::uint32_t keysym)
{
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(
        xcb_key_symbols_alloc(connection), &xcb_key_symbols_free);
    const Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols.get(), keysym));
    QList<xcb_keycode_t> list;
    for (const xcb_keycode_t *code = codes.get(); code && *code != XCB_NO_SYMBOL; ++code)
        list.append(*code);
    return list;
}

} // namespace

X11HotKey::X11HotKey(xcb_connection_t *connection)
    : m_connection(connection),
      m_root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root),
      m_keyboardEvent(firstKeyboardEvent(connection))
{
    m_layoutSettles.setSingleShot(true);
    m_layoutSettles.setInterval(layoutSettleTime);
    connect(&m_layoutSettles, &QTimer::timeout, this, [this] {
        ungrab();
        grab();
    });
    qGuiApp->installNativeEventFilter(this);
}

X11HotKey::~X11HotKey()
{
    qGuiApp->removeNativeEventFilter(this);
    ungrab();
}

void X11HotKey::configure(std::optional<VeranoxGlobalShortcut> shortcut)
{
    ungrab();
    m_shortcut = std::move(shortcut);
    grab();
}

void X11HotKey::grab()
{
    const auto symbol = m_shortcut ? keySymbol(m_shortcut->keyCode) : std::nullopt;
    if (!symbol)
        return;
    m_modifiers = x11Modifiers(m_shortcut->carbonModifiers);
    m_keyCodes = keyCodesFor(m_connection, symbol->keysym);
    QList<xcb_void_cookie_t> requests;
    for (const xcb_keycode_t code : m_keyCodes) {
        for (const std::uint16_t lockState : lockStates)
            requests.append(xcb_grab_key_checked(
                m_connection, 0, m_root, m_modifiers | lockState, code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool refused = false;
    for (const xcb_void_cookie_t request : requests)
        refused |= Reply<xcb_generic_error_t>(xcb_request_check(m_connection, request)) != nullptr;
    if (refused) // another program has it: half a grab would be none that can be relied on
        ungrab();
}

void X11HotKey::ungrab()
{
    for (const xcb_keycode_t code : std::exchange(m_keyCodes, {})) {
        for (const std::uint16_t lockState : lockStates)
            xcb_ungrab_key(m_connection, code, m_root, m_modifiers | lockState);
    }
    xcb_flush(m_connection);
}

bool X11HotKey::isOurs(const xcb_key_press_event_t &press) const
{
    return press.event == m_root && m_keyCodes.contains(press.detail)
        && (press.state & keyboardModifiers & ~locks) == m_modifiers;
}

bool X11HotKey::nativeEventFilter(const QByteArray &eventType, void *message, qintptr * /*result*/)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    constexpr unsigned withoutSentBit = 0x7f; // which events have that another client sent
    const auto type = static_cast<std::uint8_t>(event->response_type & withoutSentBit);
    if (type == XCB_KEY_PRESS && isOurs(*reinterpret_cast<const xcb_key_press_event_t *>(event))) {
        Q_EMIT triggered();
        return true;
    }
    constexpr std::uint8_t lastLayoutEvent = 1; // a new keyboard, a new map
    const bool layoutChanged = type == XCB_MAPPING_NOTIFY
        || (m_keyboardEvent != 0 && type == m_keyboardEvent && event->pad0 <= lastLayoutEvent);
    if (layoutChanged && m_shortcut)
        m_layoutSettles.start();
    return false;
}
