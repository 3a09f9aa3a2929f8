#include "Platform/Linux/XEmbedTrayWatcher.h"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

xcb_atom_t internAtom(xcb_connection_t *connection, const QByteArray &name)
{
    constexpr quint8 onlyIfExists = 0;
    const auto cookie = xcb_intern_atom(connection, onlyIfExists, static_cast<quint16>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Events that came through SendEvent carry this bit in their type.
constexpr quint8 sentEventBit = 0x80;

} // namespace

XEmbedTrayWatcher::XEmbedTrayWatcher(QObject *parent) : QObject(parent)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) // other platforms answer with an empty interface
        return;
    m_managerAtom = internAtom(x11->connection(), "MANAGER");
    qGuiApp->installNativeEventFilter(this);
}

XEmbedTrayWatcher::~XEmbedTrayWatcher()
{
    if (qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}

bool XEmbedTrayWatcher::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & ~sentEventBit;
    // The window of a tray that goes is destroyed; Qt listens for that on the window.
    if (type == XCB_DESTROY_NOTIFY)
        announceLater();
    else if (type == XCB_CLIENT_MESSAGE
        && static_cast<const xcb_client_message_event_t *>(message)->type == m_managerAtom)
        announceLater();
    return false;
}

void XEmbedTrayWatcher::announceLater()
{
    if (std::exchange(m_announcing, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_announcing = false;
            Q_EMIT maybeChanged();
        },
        Qt::QueuedConnection);
}
