#pragma once
#include "System/VeranoxGlobalHotKeyController.h"
#include <QAbstractNativeEventFilter>
#include <QList>
#include <QTimer>
#include <xcb/xcb.h>

// A key grab on the root window, held whatever the state of Caps Lock and Num Lock, and renewed when the keyboard
// layout changes. Needs the connection of Qt's xcb platform, which outlives it.
class X11HotKey final : public VeranoxGlobalHotKeyController, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit X11HotKey(xcb_connection_t *connection);
    ~X11HotKey() override;

    void configure(std::optional<VeranoxGlobalShortcut> shortcut) override;
    bool isRegistered() const override { return !m_keyCodes.isEmpty(); }

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    bool isOurs(const xcb_key_press_event_t &press) const;
    void grab();
    void ungrab();

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
    std::uint8_t m_keyboardEvent = 0; // of the XKEYBOARD extension; 0 without it
    std::optional<VeranoxGlobalShortcut> m_shortcut;
    QList<xcb_keycode_t> m_keyCodes; // grabbed
    std::uint16_t m_modifiers = 0;
    QTimer m_layoutSettles;
};
