#include "Core/Entry/VeranoxMenuAppParts.h"
#include "Core/Entry/ExitBackstop.h"
#include "Platform/InformationDictionary.h"
#include "Platform/Platform.h"
#include "Platform/ResourceDirectory.h"

VeranoxMenuAppParts VeranoxMenuAppParts::live(jobs::MainQueue &queue)
{
    return {.processActivity = platform::makeProcessActivity(),
        .theme = platform::makeSystemTheme(),
        .hotKeyController = platform::makeGlobalHotKey(),
        .preferences = std::make_unique<VeranoxAppPreferences>(platform::makeUserDefaults(), platform::makeLoginItem()),
        .store = VeranoxStore::live(queue, platform::resourceDirectory(), platform::informationDictionary(),
            platform::makeTunnelSecrets(queue)),
        .makeStatusItem = platform::makeStatusItem,
        .endProcessAfter = ::endProcessAfter};
}
