#include "Platform/Platform.h"

#include "Platform/Linux/BusSingleInstance.h"
#include "Platform/Linux/DesktopAppearance.h"
#include "Platform/Linux/DesktopTermination.h"
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

std::unique_ptr<SingleInstance> platform::makeSingleInstance()
{
    return std::make_unique<BusSingleInstance>(QDBusConnection::sessionBus());
}

std::unique_ptr<Termination> platform::makeTermination()
{
    return std::make_unique<DesktopTermination>();
}
