#include "Platform/Platform.h"

#include "Platform/macOS/ApplicationTermination.h"
#include "Platform/macOS/BundleUserDefaults.h"
#include "Platform/macOS/CarbonHotKey.h"
#include "Platform/macOS/MenuBarTheme.h"
#include "Platform/macOS/ServiceLoginItem.h"
#include "Platform/macOS/SystemSingleInstance.h"
#include "Platform/macOS/SystemTrayStatusItem.h"
#include "Platform/macOS/VeranoxKeychainTunnelSecrets.h"

std::unique_ptr<StatusItem> platform::makeStatusItem()
{
    return std::make_unique<SystemTrayStatusItem>();
}

std::unique_ptr<SystemTheme> platform::makeSystemTheme()
{
    return std::make_unique<MenuBarTheme>();
}

std::unique_ptr<SingleInstance> platform::makeSingleInstance()
{
    return std::make_unique<SystemSingleInstance>();
}

std::unique_ptr<Termination> platform::makeTermination()
{
    return std::make_unique<ApplicationTermination>();
}

std::unique_ptr<UserDefaults> platform::makeUserDefaults()
{
    return std::make_unique<BundleUserDefaults>();
}

std::unique_ptr<LoginItem> platform::makeLoginItem()
{
    return std::make_unique<ServiceLoginItem>();
}

std::unique_ptr<VeranoxGlobalHotKeyController> platform::makeGlobalHotKey()
{
    return std::make_unique<CarbonHotKey>();
}

std::unique_ptr<VeranoxTunnelSecretStoring> platform::makeTunnelSecrets(jobs::MainQueue & /*queue*/)
{
    return std::make_unique<VeranoxKeychainTunnelSecrets>();
}
