#include "Platform/Platform.h"

#include "Platform/Linux/DesktopAppearance.h"
#include "Platform/Linux/TrayStatusItem.h"
#include <QDBusConnection>

std::unique_ptr<StatusItem> platform::makeStatusItem()
{
    return std::make_unique<TrayStatusItem>(QDBusConnection::sessionBus());
}

std::unique_ptr<Appearance> platform::makeAppearance()
{
    const QStringList desktopNames = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    return std::make_unique<DesktopAppearance>(QDBusConnection::sessionBus(), desktopNames);
}
