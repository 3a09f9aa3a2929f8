#include "Core/Entry/VeranoxMenuAppDelegate.h"
#include "Controls/QmlEngine.h"
#include "MenuBar/VeranoxQuitConfirmationPresenter.h"
#include "MenuBar/VeranoxStatusItemController.h"
#include <QCoreApplication>
#include <QtGlobal>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A unit test bundle that loads the application must get none of its effects.
bool isHostOfUnitTests()
{
    return qEnvironmentVariableIsSet("XCTestConfigurationFilePath");
}

// After the reply the process ends by itself; if something keeps it alive, it ends all the same.
constexpr auto exitBackstop = 250ms;

} // namespace

VeranoxMenuAppDelegate::VeranoxMenuAppDelegate(jobs::MainQueue &queue, VeranoxMenuAppParts parts)
    : m_processActivity(std::move(parts.processActivity)),
      m_theme(std::move(parts.theme)),
      m_hotKeyController(std::move(parts.hotKeyController)),
      m_preferences(std::move(parts.preferences)),
      m_store(std::move(parts.store)),
      m_makeStatusItem(std::move(parts.makeStatusItem)),
      m_endProcessAfter(std::move(parts.endProcessAfter)),
      m_qmlEngine(std::make_unique<QmlEngine>(*m_theme)),
      m_quitConfirmation(std::make_unique<VeranoxQuitConfirmationPresenter>(*m_qmlEngine)),
      m_jobs(queue)
{
}

VeranoxMenuAppDelegate::~VeranoxMenuAppDelegate() = default;

void VeranoxMenuAppDelegate::applicationDidFinishLaunching()
{
    m_processActivity->becomeAgent();
    m_preferences->mirrorLaunchAtLogin();
    configureSettingsShortcut();
    connect(m_hotKeyController.get(), &VeranoxGlobalHotKeyController::triggered, this,
        &VeranoxMenuAppDelegate::applicationShouldHandleReopen);
    connect(m_preferences.get(), &VeranoxAppPreferences::settingsShortcutIDChanged, this,
        &VeranoxMenuAppDelegate::configureSettingsShortcut);
    if (isHostOfUnitTests())
        return;
    m_processActivity->begin(u"Veranox is a persistent menu bar application"_s);
    m_statusItemController = std::make_unique<VeranoxStatusItemController>(
        m_jobs.queue(), *m_store, m_makeStatusItem(), *m_theme, *m_qmlEngine, [this] { confirmQuit(); });
    m_jobs.start(startStore());
}

void VeranoxMenuAppDelegate::confirmQuit()
{
    m_quitConfirmation->present(*m_store, [] { QCoreApplication::quit(); });
}

jobs::Async<> VeranoxMenuAppDelegate::startStore()
{
    co_await m_store->prepareRuntimeLog();
    if (const QString problem = m_preferences->defaults().problem(); !problem.isEmpty())
        m_store->appendLog(u"[APP] "_s + problem);
    if (m_preferences->startServiceOnLaunch())
        co_await m_store->start();
    else
        m_store->appendLog(u"[APP] automatic local service startup is disabled in Settings"_s);
}

VeranoxMenuAppDelegate::TerminateReply VeranoxMenuAppDelegate::applicationShouldTerminate()
{
    if (isHostOfUnitTests() || m_isCompletingTerminateRequest)
        return TerminateReply::now;
    m_jobs.start(completeTermination());
    return TerminateReply::later;
}

jobs::Async<> VeranoxMenuAppDelegate::completeTermination()
{
    co_await m_store->quitAndShutdown();
    m_isCompletingTerminateRequest = true;
    m_endProcessAfter(exitBackstop);
    Q_EMIT terminationReplied();
}

void VeranoxMenuAppDelegate::applicationWillTerminate()
{
    if (isHostOfUnitTests())
        return;
    m_quitConfirmation->close();
    m_statusItemController.reset();
    m_store->shutdown();
    m_processActivity->end();
}

void VeranoxMenuAppDelegate::applicationShouldHandleReopen()
{
    if (m_statusItemController)
        m_statusItemController->showPopover({});
}

void VeranoxMenuAppDelegate::configureSettingsShortcut()
{
    m_hotKeyController->configure(m_preferences->settingsShortcut());
}
