#pragma once
#include "Base/Jobs/MainQueue.h"
#include "Platform/ProcessActivity.h"
#include "Platform/SingleInstance.h"
#include "Platform/StatusItem.h"
#include "Platform/StatusService.h"
#include "Platform/SystemTheme.h"
#include "Platform/Termination.h"
#include "System/LoginItem.h"
#include "System/UserDefaults.h"
#include "System/VeranoxGlobalHotKeyController.h"
#include "Tunnels/VeranoxTunnelSecretStoring.h"
#include <memory>

// What this system offers behind the seams. The folder of the system implements it; nothing else knows which system it
// is. Each call makes a new object, for the main thread, and needs the QApplication.
namespace platform {

std::unique_ptr<StatusItem> makeStatusItem();
std::unique_ptr<SystemTheme> makeSystemTheme();
std::unique_ptr<SingleInstance> makeSingleInstance();
std::unique_ptr<Termination> makeTermination();
std::unique_ptr<ProcessActivity> makeProcessActivity();
std::unique_ptr<UserDefaults> makeUserDefaults();
std::unique_ptr<LoginItem> makeLoginItem();
std::unique_ptr<VeranoxGlobalHotKeyController> makeGlobalHotKey();
std::unique_ptr<VeranoxTunnelSecretStoring> makeTunnelSecrets(jobs::MainQueue &queue);

// Answers every question of another process with describe(), for the life of the result. Null where the system has no
// way to ask.
std::unique_ptr<StatusService> makeStatusService(std::function<QStringList()> describe);

} // namespace platform
