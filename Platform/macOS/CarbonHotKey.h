#pragma once
#include "System/VeranoxGlobalHotKeyController.h"
#include <Carbon/Carbon.h>

// A hot key of the application's event target. The event handler is installed once, for the controller's life.
class CarbonHotKey final : public VeranoxGlobalHotKeyController {
    Q_OBJECT

public:
    CarbonHotKey();
    ~CarbonHotKey() override;

    void configure(std::optional<VeranoxGlobalShortcut> shortcut) override;
    bool isRegistered() const override { return m_hotKeyRef != nullptr; }

private:
    static OSStatus handlePress(EventHandlerCallRef next, EventRef event, void *controller);
    void unregister();

    EventHotKeyRef m_hotKeyRef = nullptr;
    EventHandlerRef m_eventHandlerRef = nullptr;
};
