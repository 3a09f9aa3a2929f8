#include "Platform/Platform.h"

#include "Platform/macOS/ApplicationTermination.h"
#include "Platform/macOS/MenuBarAppearance.h"
#include "Platform/macOS/SystemSingleInstance.h"
#include "Platform/macOS/SystemTrayStatusItem.h"

std::unique_ptr<StatusItem> platform::makeStatusItem()
{
    return std::make_unique<SystemTrayStatusItem>();
}

std::unique_ptr<Appearance> platform::makeAppearance()
{
    return std::make_unique<MenuBarAppearance>();
}

std::unique_ptr<SingleInstance> platform::makeSingleInstance()
{
    return std::make_unique<SystemSingleInstance>();
}

std::unique_ptr<Termination> platform::makeTermination()
{
    return std::make_unique<ApplicationTermination>();
}
