#include "Platform/macOS/CarbonHotKey.h"

namespace {

constexpr EventHotKeyID hotKeyID{'VRNX', 1};

} // namespace

CarbonHotKey::CarbonHotKey()
{
    constexpr EventTypeSpec pressed{kEventClassKeyboard, kEventHotKeyPressed};
    InstallEventHandler(GetApplicationEventTarget(), &handlePress, 1, &pressed, this, &m_eventHandlerRef);
}

CarbonHotKey::~CarbonHotKey()
{
    unregister();
    if (m_eventHandlerRef)
        RemoveEventHandler(m_eventHandlerRef);
}

void CarbonHotKey::configure(std::optional<VeranoxGlobalShortcut> shortcut)
{
    unregister();
    if (!shortcut)
        return;
    EventHotKeyRef made = nullptr;
    const OSStatus status = RegisterEventHotKey(
        shortcut->keyCode, shortcut->carbonModifiers, hotKeyID, GetApplicationEventTarget(), 0, &made);
    if (status == noErr)
        m_hotKeyRef = made;
}

void CarbonHotKey::unregister()
{
    if (EventHotKeyRef registered = std::exchange(m_hotKeyRef, nullptr))
        UnregisterEventHotKey(registered);
}

OSStatus CarbonHotKey::handlePress(EventHandlerCallRef /*next*/, EventRef /*event*/, void *controller)
{
    auto *self = static_cast<CarbonHotKey *>(controller);
    QMetaObject::invokeMethod(self, &CarbonHotKey::triggered, Qt::QueuedConnection);
    return noErr;
}
