#pragma once
#include "Core/VeranoxStore.h"
#include "Platform/ProcessActivity.h"
#include "Platform/StatusItem.h"
#include "Platform/SystemTheme.h"
#include "System/VeranoxAppPreferences.h"
#include "System/VeranoxGlobalHotKeyController.h"
#include <chrono>
#include <functional>
#include <memory>

// What the application is made of. All of it is there.
struct VeranoxMenuAppParts {
    std::unique_ptr<ProcessActivity> processActivity;
    std::unique_ptr<SystemTheme> theme;
    std::unique_ptr<VeranoxGlobalHotKeyController> hotKeyController;
    std::unique_ptr<VeranoxAppPreferences> preferences;
    std::unique_ptr<VeranoxStore> store;
    std::function<std::unique_ptr<StatusItem>()> makeStatusItem; // an item shows itself as soon as it is made
    std::function<void(std::chrono::milliseconds)> endProcessAfter;

    // Those of this system, made in this order, with the store that talks to the service. Needs the QApplication.
    static VeranoxMenuAppParts live(jobs::MainQueue &queue);
};
