#include "Platform/Platform.h"

#include "Platform/Linux/AutostartLoginItem.h"
#include "Platform/Linux/BusSingleInstance.h"
#include "Platform/Linux/DesktopTermination.h"
#include "Platform/Linux/DesktopTheme.h"
#include "Platform/Linux/HotKey/PortalHotKey.h"
#include "Platform/Linux/HotKey/X11HotKey.h"
#include "Platform/Linux/Secrets/SecretServiceTunnelSecrets.h"
#include "Platform/Linux/TrayStatusItem.h"
#include "System/JsonUserDefaults.h"
#include "Tunnels/VeranoxNoTunnelSecrets.h"
#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

QStringList desktopNames()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
}

} // namespace

std::unique_ptr<StatusItem> platform::makeStatusItem()
{
    return std::make_unique<TrayStatusItem>(QDBusConnection::sessionBus(), desktopNames());
}

std::unique_ptr<SystemTheme> platform::makeSystemTheme()
{
    return std::make_unique<DesktopTheme>(QDBusConnection::sessionBus(), desktopNames());
}

std::unique_ptr<SingleInstance> platform::makeSingleInstance()
{
    return std::make_unique<BusSingleInstance>(QDBusConnection::sessionBus());
}

std::unique_ptr<Termination> platform::makeTermination()
{
    return std::make_unique<DesktopTermination>();
}

std::unique_ptr<UserDefaults> platform::makeUserDefaults()
{
    return std::make_unique<JsonUserDefaults>(JsonUserDefaults::defaultPath());
}

std::unique_ptr<LoginItem> platform::makeLoginItem()
{
    return std::make_unique<AutostartLoginItem>(
        AutostartLoginItem::defaultEntryPath(), QCoreApplication::applicationFilePath());
}

std::unique_ptr<VeranoxGlobalHotKeyController> platform::makeGlobalHotKey()
{
    if (const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>(); x11 && x11->connection())
        return std::make_unique<X11HotKey>(x11->connection());
    return std::make_unique<PortalHotKey>(QDBusConnection::sessionBus());
}

std::unique_ptr<VeranoxTunnelSecretStoring> platform::makeTunnelSecrets(jobs::MainQueue &queue)
{
    // libsecret would start a bus of its own where there is none, and answers through GLib's part of the event loop.
    const bool hasGLib = QAbstractEventDispatcher::instance()->inherits("QEventDispatcherGlib");
    if (!hasGLib || !QDBusConnection::sessionBus().isConnected())
        return std::make_unique<VeranoxNoTunnelSecrets>(
            u"Veranox cannot reach a keyring from here, so it keeps no SSH passwords: type them again after each "
            "start."_s);
    return std::make_unique<SecretServiceTunnelSecrets>(queue);
}
