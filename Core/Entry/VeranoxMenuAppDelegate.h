#pragma once
#include "Base/Jobs/Jobs.h"
#include "Core/Entry/VeranoxMenuAppParts.h"
#include <QObject>
#include <memory>

class QmlEngine;
class VeranoxQuitConfirmationPresenter;
class VeranoxStatusItemController;

// Owns every long-lived object and decides when each starts and stops. Main thread only.
class VeranoxMenuAppDelegate final : public QObject {
    Q_OBJECT

public:
    enum class TerminateReply { now, later };

    // Nothing runs yet. The queue outlives the delegate.
    VeranoxMenuAppDelegate(jobs::MainQueue &queue, VeranoxMenuAppParts parts);
    ~VeranoxMenuAppDelegate() override;

    VeranoxStore &store() { return *m_store; }

    // Puts up the status item and starts the store.
    void applicationDidFinishLaunching();

    // Asked before the application ends. The first answer is "later": the service is stopped in order first, then
    // terminationReplied() follows, and the next answer is "now".
    TerminateReply applicationShouldTerminate();

    // The last call before the process ends: takes the status item down and stops what still runs, at once.
    void applicationWillTerminate();

    // Another launch of the application hands over: what this one has to show comes to the front.
    void applicationShouldHandleReopen();

    // Puts the combination that the preferences name into force, in the place of the one before.
    void configureSettingsShortcut();

Q_SIGNALS:
    void terminationReplied(); // the application may end now

private:
    void confirmQuit();
    jobs::Async<> startStore();
    jobs::Async<> completeTermination();

    std::unique_ptr<ProcessActivity> m_processActivity;
    std::unique_ptr<SystemTheme> m_theme;
    std::unique_ptr<VeranoxGlobalHotKeyController> m_hotKeyController;
    std::unique_ptr<VeranoxAppPreferences> m_preferences;
    std::unique_ptr<VeranoxStore> m_store;
    std::function<std::unique_ptr<StatusItem>()> m_makeStatusItem;
    std::function<void(std::chrono::milliseconds)> m_endProcessAfter;
    std::unique_ptr<QmlEngine> m_qmlEngine;
    std::unique_ptr<VeranoxQuitConfirmationPresenter> m_quitConfirmation;
    std::unique_ptr<VeranoxStatusItemController> m_statusItemController; // from launch to termination
    bool m_isCompletingTerminateRequest = false;
    jobs::JobScope m_jobs;
};
