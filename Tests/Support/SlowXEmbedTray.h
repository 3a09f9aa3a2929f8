#pragma once
#include <QGuiApplication>
#include <cstdlib>
#include <xcb/xcb.h>

// A tray of the XEmbed kind that hears icons ask for a place and never gives them one. Of this process; needs X.
class SlowXEmbedTray {
public:
    SlowXEmbedTray() : m_window(xcb_generate_id(m_connection))
    {
        const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        const auto selection = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(m_connection, m_window, selection, XCB_CURRENT_TIME);
        announce(screen->root, selection);
    }
    SlowXEmbedTray(const SlowXEmbedTray &) = delete;
    SlowXEmbedTray &operator=(const SlowXEmbedTray &) = delete;
    ~SlowXEmbedTray()
    {
        xcb_destroy_window(m_connection, m_window);
        xcb_flush(m_connection);
    }

private:
    void announce(xcb_window_t root, xcb_atom_t selection)
    {
        xcb_client_message_event_t manager{};
        manager.response_type = XCB_CLIENT_MESSAGE;
        manager.format = 32;
        manager.window = root;
        manager.type = atom("MANAGER");
        manager.data.data32[1] = selection;
        manager.data.data32[2] = m_window;
        xcb_send_event(
            m_connection, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char *>(&manager));
        xcb_flush(m_connection);
    }

    xcb_atom_t atom(const QByteArray &name)
    {
        const auto cookie = xcb_intern_atom(m_connection, 0, quint16(name.size()), name.constData());
        auto *reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_atom_t found = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return found;
    }

    xcb_connection_t *m_connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const xcb_window_t m_window;
};
