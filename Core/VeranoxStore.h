#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "API/Client/VeranoxDiagnosticSession.h"
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "API/Values/ServiceState.h"
#include "Base/Jobs/Jobs.h"
#include "Core/MenuBarIcon.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include "Core/VeranoxSettingsSelection.h"
#include "Log/VeranoxLogDetails.h"
#include "Log/VeranoxProfileNameInference.h"
#include "Log/VeranoxRuntimeLogPersisting.h"
#include "Log/VeranoxSessionIdentity.h"
#include "Log/VeranoxUnwrittenLog.h"
#include "Profiles/VeranoxLoginPrompt.h"
#include "Profiles/VeranoxProfileDraft.h"
#include "Profiles/VeranoxProfileTestFeedback.h"
#include "Profiles/VeranoxRouterRestartPrompt.h"
#include "Profiles/VeranoxRouterSettingsDraft.h"
#include "Publications/VeranoxPublicationActionResult.h"
#include "Publications/VeranoxPublicationDraft.h"
#include "System/VeranoxNotificationSnapshot.h"
#include "Tunnels/VeranoxTunnelDraft.h"
#include "Tunnels/VeranoxTunnelSecretStoring.h"
#include <QObject>
#include <memory>
#include <optional>

// The one observable object of the application: every view reads it, every user action is one of its operations, every
// change of the local service's state lands in it. Main thread only.
//
// Each property has its own change signal, and changed() tells of any of them, once per turn of the event loop. A write
// that changes nothing emits nothing. lastActionMessage holds the outcome of the last user action as a finished
// sentence; failures of a refresh go to serviceState instead.
class VeranoxStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(ServiceState serviceState READ serviceState NOTIFY serviceStateChanged)
    Q_PROPERTY(QList<VeranoxProfile> profiles READ profiles NOTIFY profilesChanged)
    Q_PROPERTY(QList<VeranoxTunnel> tunnels READ tunnels NOTIFY tunnelsChanged)
    Q_PROPERTY(QList<VeranoxPublication> publications READ publications NOTIFY publicationsChanged)
    Q_PROPERTY(VeranoxConfig config READ config NOTIFY configChanged)
    Q_PROPERTY(std::optional<VeranoxEditableConfig> editableConfig READ editableConfig NOTIFY editableConfigChanged)
    Q_PROPERTY(VeranoxEnvironment environment READ environment NOTIFY environmentChanged)
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY isRefreshingChanged)
    Q_PROPERTY(bool isDiagnosing READ isDiagnosing NOTIFY isDiagnosingChanged)
    Q_PROPERTY(bool isSavingSettings READ isSavingSettings NOTIFY isSavingSettingsChanged)
    Q_PROPERTY(QString lastActionMessage READ lastActionMessage NOTIFY lastActionMessageChanged)
    Q_PROPERTY(std::optional<VeranoxPathReport> pathReport READ pathReport NOTIFY pathReportChanged)
    Q_PROPERTY(QList<VeranoxRuntimeLogEntry> runtimeLog READ runtimeLog NOTIFY runtimeLogChanged)
    Q_PROPERTY(std::optional<QString> runtimeLogPersistenceError READ runtimeLogPersistenceError NOTIFY
            runtimeLogPersistenceErrorChanged)
    Q_PROPERTY(bool isCreatingProfile READ isCreatingProfile NOTIFY isCreatingProfileChanged)
    Q_PROPERTY(bool isQuitting READ isQuitting NOTIFY isQuittingChanged)
    Q_PROPERTY(std::optional<QString> testingProfileName READ testingProfileName NOTIFY testingProfileNameChanged)
    Q_PROPERTY(std::optional<VeranoxProfileTestFeedback> profileTestFeedback READ profileTestFeedback NOTIFY
            profileTestFeedbackChanged)
    Q_PROPERTY(bool routerNeedsRestart READ routerNeedsRestart NOTIFY routerNeedsRestartChanged)
    Q_PROPERTY(bool isRestartingRouter READ isRestartingRouter NOTIFY isRestartingRouterChanged)
    Q_PROPERTY(std::optional<VeranoxLoginPrompt> loginPrompt READ loginPrompt NOTIFY loginPromptChanged)
    Q_PROPERTY(std::optional<VeranoxRouterRestartPrompt> routerRestartPrompt READ routerRestartPrompt NOTIFY
            routerRestartPromptChanged)
    Q_PROPERTY(VeranoxProfileDraft profileDraft READ profileDraft WRITE setProfileDraft NOTIFY profileDraftChanged)
    Q_PROPERTY(VeranoxRouterSettingsDraft routerDraft READ routerDraft WRITE setRouterDraft NOTIFY routerDraftChanged)
    Q_PROPERTY(QString diagnosticTarget READ diagnosticTarget WRITE setDiagnosticTarget NOTIFY diagnosticTargetChanged)
    Q_PROPERTY(std::optional<VeranoxSettingsSelection> requestedSettingsSection READ requestedSettingsSection WRITE
            setRequestedSettingsSection NOTIFY requestedSettingsSectionChanged)
    Q_PROPERTY(double menuBarPulse READ menuBarPulse NOTIFY menuBarPulseChanged)

public:
    // Everything that the store works with. The clients must be there; an absent observer is told nothing.
    struct Collaborators {
        std::unique_ptr<VeranoxAPIClientProtocol> apiClient;
        std::unique_ptr<VeranoxRuntimeClientProtocol> runtimeClient;
        std::optional<VeranoxCommand> cliCommand; // absent: a service can only be attached to
        jobs::Clock::Duration serviceReadinessTimeout = std::chrono::seconds(30); // from launch to first answer
        jobs::Clock::Duration startupProfileSettlementTimeout = std::chrono::seconds(65); // from the start's summary
        VeranoxDiagnosticSession diagnostics;
        std::unique_ptr<VeranoxFailureObserving> failureNotifier;
        std::unique_ptr<VeranoxRuntimeLogPersisting> runtimeLogPersistence; // absent: the log ends with the store
        VeranoxSessionIdentity sessionIdentity = VeranoxSessionIdentity::of({});
        std::unique_ptr<VeranoxTunnelSecretStoring> tunnelSecrets; // absent: no password is kept
    };

    // The store of the running application: it talks to the service at 127.0.0.1:43200. `resourceDirectory` is where
    // this application's own resources lie, the service's executable among them; the information dictionary names the
    // build.
    static std::unique_ptr<VeranoxStore> live(jobs::MainQueue &queue, const QString &resourceDirectory,
        const QVariantMap &infoDictionary = {}, std::unique_ptr<VeranoxTunnelSecretStoring> tunnelSecrets = {});

    VeranoxStore(jobs::MainQueue &queue, Collaborators collaborators);
    ~VeranoxStore() override;

    // ---- State, each at the value that it has before the first refresh
    const ServiceState &serviceState() const { return m_serviceState; }
    const QList<VeranoxProfile> &profiles() const { return m_profiles; }
    const QList<VeranoxTunnel> &tunnels() const { return m_tunnels; }
    const QList<VeranoxPublication> &publications() const { return m_publications; }
    const VeranoxConfig &config() const { return m_config; }
    const std::optional<VeranoxEditableConfig> &editableConfig() const { return m_editableConfig; }
    const VeranoxEnvironment &environment() const { return m_environment; }
    bool isRefreshing() const { return m_isRefreshing; }
    bool isDiagnosing() const { return m_isDiagnosing; }
    bool isSavingSettings() const { return m_isSavingSettings; }
    const QString &lastActionMessage() const { return m_lastActionMessage; }
    const std::optional<VeranoxPathReport> &pathReport() const { return m_pathReport; }
    const QList<VeranoxRuntimeLogEntry> &runtimeLog() const { return m_runtimeLog; }
    const std::optional<QString> &runtimeLogPersistenceError() const { return m_runtimeLogPersistenceError; }
    bool isCreatingProfile() const { return m_isCreatingProfile; }
    bool isQuitting() const { return m_isQuitting; }
    const std::optional<QString> &testingProfileName() const { return m_testingProfileName; }
    const std::optional<VeranoxProfileTestFeedback> &profileTestFeedback() const { return m_profileTestFeedback; }
    bool routerNeedsRestart() const { return m_routerNeedsRestart; }
    bool isRestartingRouter() const { return m_isRestartingRouter; }
    const std::optional<VeranoxLoginPrompt> &loginPrompt() const { return m_loginPrompt; }
    const std::optional<VeranoxRouterRestartPrompt> &routerRestartPrompt() const { return m_routerRestartPrompt; }
    const VeranoxProfileDraft &profileDraft() const { return m_profileDraft; }
    const VeranoxRouterSettingsDraft &routerDraft() const { return m_routerDraft; }
    const QString &diagnosticTarget() const { return m_diagnosticTarget; }
    const std::optional<VeranoxSettingsSelection> &requestedSettingsSection() const
    {
        return m_requestedSettingsSection;
    }
    double menuBarPulse() const { return m_menuBarPulse; }
    const VeranoxDiagnosticSession &diagnostics() const { return m_diagnostics; }

    // ---- What views edit
    void setProfileDraft(VeranoxProfileDraft draft);
    void setRouterDraft(VeranoxRouterSettingsDraft draft);
    void setDiagnosticTarget(QString target);
    void setRequestedSettingsSection(std::optional<VeranoxSettingsSelection> section);

    // ---- Derived values
    QString statusTitle() const;
    QString routerStatusDetail() const;
    bool statusActionRestartsService() const;
    MenuBarIcon menuBarIcon() const;
    QUrl pacURL() const; // where the service offers its proxy configuration
    bool routerDraftHasChanges() const;
    bool profileDraftHasChanges() const;

    // ---- Start, refresh, stop
    // Starts the service, reads everything once, then keeps on reading it on schedule. The log is told how that went,
    // and once more when the profiles have settled or 65 seconds have passed. Called once, by the launch.
    jobs::Async<> start();

    // Attaches to the service that answers, or launches our own and waits until it answers. The outcome is in
    // serviceState. Callers at the same time share one start.
    jobs::Async<> ensureServiceStarted();

    // ensureServiceStarted() and refresh() as a job of its own, for a user who asked for it.
    Q_INVOKABLE void startRouter();

    // Stops the service and starts it again, also when none runs. A call while another restarts does nothing.
    jobs::Async<> restartRouterForPendingChangesAsync();
    Q_INVOKABLE void restartRouterForPendingChanges(); // the same as a job of its own

    // What follows when the service that we launched ended although nobody stopped it: it is started again after 1, 2
    // and 4 seconds; a fourth crash within a minute of the last attempt ends that.
    void handleGUIServiceExit(std::int32_t status);

    // Brings every property into step with the service. Returns at once while another refresh runs. All its requests
    // carry one correlation identifier: the one bound to the job at hand, or a fresh one.
    jobs::Async<> refresh();

    // refresh() as a job of its own.
    Q_INVOKABLE void requestRefresh();

    // Takes the whole list that the service answered a mutation with. A refresh that is on its way drops its older one.
    void adoptTunnels(QList<VeranoxTunnel> fresh);
    void adoptPublications(QList<VeranoxPublication> fresh);

    // Starts the periodic refresh if none runs: every 15 seconds, and every 2 seconds while profiles settle, 30 times
    // at most for each settling. The first one comes one delay after the call.
    void startRefreshLoop();

    // Stops the service in order. The first call does the work; every other waits for that one's end.
    jobs::Async<> quitAndShutdown();

    // The last word before the process ends: immediate, idempotent.
    void shutdown();

    // ---- Tunnels
    // What the service answers a change with is adopted at once. Each failure is one sentence; the list then stays.

    // Each profile that has tunnels, in the shared order of profiles, with its tunnels in the service's order.
    QList<std::pair<VeranoxProfile, QList<VeranoxTunnel>>> tunnelsByProfile() const;

    // The draft of a tunnel; the keyring is asked only where a password may be kept.
    jobs::Async<VeranoxTunnelDraft> tunnelDraft(VeranoxTunnel tunnel);

    // Saves the draft and then sees to its password, which can make nothing fail. Gives the sentence of what failed;
    // an empty one when the calling job was cancelled.
    jobs::Async<std::optional<QString>> saveTunnelDraft(VeranoxTunnelDraft draft);

    // Deletes the tunnel and then its password. Gives the sentence of what failed, as above; the password then stays.
    jobs::Async<std::optional<QString>> deleteTunnel(QString name);

    // These tell of a failure in lastActionMessage.
    jobs::Async<> restartTunnel(QString name);
    jobs::Async<> setTunnelEnabled(QString name, bool enabled);

    // ---- Publications
    // The profiles that can publish, in the shared order.
    QList<VeranoxProfile> publishableProfiles() const;

    // Each profile that has publications, in the shared order of profiles, with its publications in the service's
    // order.
    QList<std::pair<VeranoxProfile, QList<VeranoxPublication>>> publicationsByProfile() const;

    // Why publications cannot be changed at present; absent when they can.
    std::optional<QString> publicationsUnavailableReason() const;

    // What the service answers is adopted at once, and the list stays on a failure. The last two tell of a failure in
    // lastActionMessage, too.
    jobs::Async<VeranoxPublicationActionResult> savePublicationDraft(VeranoxPublicationDraft draft);
    jobs::Async<VeranoxPublicationActionResult> deletePublication(QString name);
    jobs::Async<VeranoxPublicationActionResult> restartPublication(QString name);
    // Reads the list again after a failure: the service may have switched it on although it could not start it.
    jobs::Async<VeranoxPublicationActionResult> setPublicationEnabled(QString name, bool enabled);

    // ---- Activity log
    // Adds the lines of message, trimmed and redacted, empty ones left out, and keeps them for later runs. Never fails.
    // runtimeLog holds the newest 500 and tells of its changes once per turn of the event loop.
    void appendLog(const QString &message, const VeranoxLogDetails &details = {});

    // Brings back the newest entries of earlier runs, in place of what was logged so far, and logs the start of this
    // one. Once; every further call does nothing. A failure goes to runtimeLogPersistenceError.
    jobs::Async<> prepareRuntimeLog();

    // The profile, as the service or the configuration spells it, that a line of the log mentions.
    std::optional<QString> inferredProfileName(const QString &line) const;

Q_SIGNALS:
    void changed(); // anything of the below; at most once per turn of the event loop, after the writes
    void serviceStateChanged();
    void profilesChanged();
    void tunnelsChanged();
    void publicationsChanged();
    void configChanged();
    void editableConfigChanged();
    void environmentChanged();
    void isRefreshingChanged();
    void isDiagnosingChanged();
    void isSavingSettingsChanged();
    void lastActionMessageChanged();
    void pathReportChanged();
    void runtimeLogChanged();
    void runtimeLogAdded(const VeranoxRuntimeLogEntry &entry); // at once, for each new entry
    void runtimeLogPersistenceErrorChanged();
    void isCreatingProfileChanged();
    void isQuittingChanged();
    void testingProfileNameChanged();
    void profileTestFeedbackChanged();
    void routerNeedsRestartChanged();
    void isRestartingRouterChanged();
    void loginPromptChanged();
    void routerRestartPromptChanged();
    void profileDraftChanged();
    void routerDraftChanged();
    void diagnosticTargetChanged();
    void requestedSettingsSectionChanged();
    void menuBarPulseChanged();

private:
    struct Fetches; // the six reads of one refresh, running side by side
    struct Generations { // each counts the lists that mutations have brought: a refresh must not undo them
        int tunnels = 0;
        int publications = 0;
    };
    struct StartupProfileSettlementObservation {
        QString correlationID; // of the start that began it
        jobs::Clock::Time startedAt;
    };
    using ChangeSignal = void (VeranoxStore::*)();

    template <class T> bool write(T &property, T value, ChangeSignal signal);
    void announceChange();
    void observeFailureTransitions();

    void setServiceState(ServiceState state);
    void setProfiles(QList<VeranoxProfile> profiles);
    void setTunnels(QList<VeranoxTunnel> tunnels);
    void setPublications(QList<VeranoxPublication> publications);
    void setConfig(VeranoxConfig config);
    void setEditableConfig(VeranoxEditableConfig config);
    void setEnvironment(VeranoxEnvironment environment);
    void setIsRefreshing(bool on);
    void setIsQuitting();
    void setIsRestartingRouter(bool on);
    void setRouterRestartPrompt(std::optional<VeranoxRouterRestartPrompt> prompt);
    void setLastActionMessage(QString message);
    void setRouterNeedsRestart(bool needs);
    void setMenuBarPulse(double phase);

    VeranoxRuntimeLogEntry makeLogEntry(const QString &line, const VeranoxLogDetails &details);
    void keepLogEntry(VeranoxRuntimeLogEntry entry);
    jobs::Async<> writeRuntimeLog();
    void logSessionStart();
    void setRuntimeLogPersistenceError(std::optional<QString> error);

    jobs::Async<> performRefresh();
    VeranoxAPICall<> applyRequired(Fetches *fetches);
    jobs::Async<> applyOptional(Fetches *fetches, Generations atStart);
    jobs::Async<> failRefresh(Fetches *fetches, VeranoxAPIFailure failure);
    jobs::Async<> refreshLoop();
    void cancelRefreshLoop();
    QString currentStateFields() const;
    void logStartupSummary(const QString &correlationID);
    void beginStartupProfileSettlementObservationIfNeeded(const QString &correlationID);
    void cancelStartupProfileSettlementObservation();
    jobs::Async<> limitStartupProfileSettlement();
    void finishStartupProfileSettlement(const QString &outcome);

    jobs::Async<> performServiceStart();
    bool launchService();
    jobs::Async<bool> serviceBecomesReady();
    void concludeServiceStart(bool isReady);
    void recordServiceContact();
    void recordServiceStartFailure(const QString &message);
    jobs::Async<> startServiceAndRefresh();
    jobs::Async<> performStartRouter();
    jobs::Async<> recover(jobs::Clock::Duration delay);
    void forgetRecoveryAttempts();
    jobs::Async<> requestShutdownForRestart();
    void concludeRestart();

    jobs::Async<std::optional<QString>> applyTunnels(VeranoxAPICall<QList<VeranoxTunnel>> change, QString unavailable);
    jobs::Async<> switchTunnel(QString name, VeranoxAPICall<QList<VeranoxTunnel>> change);
    jobs::Async<> storeTunnelPassword(VeranoxTunnelDraft draft, QString saved);
    jobs::Async<> sendStoredPassword(QString tunnelName, VeranoxTunnelSecretStoring::Unlocking unlocking);
    jobs::Async<> republishTunnelSecrets();

    std::optional<QString> publicationConflict(const VeranoxPublicationDraft &draft) const;
    jobs::Async<VeranoxPublicationActionResult> applyPublications(
        VeranoxAPICall<QList<VeranoxPublication>> change, QString success, QString unavailable);
    void tellOfFailure(const QString &publication, const VeranoxPublicationActionResult &result);

    jobs::Async<> performQuit();
    jobs::Async<> requestServiceShutdown();

    bool profilesSettling() const;
    bool menuBarNeedsAttention() const;

    void followPulseRule();
    jobs::Async<> applyPulse(bool on);
    jobs::Async<> pulse();
    void startPulse();
    void stopPulse();

    std::unique_ptr<VeranoxAPIClientProtocol> m_apiClient;
    std::unique_ptr<VeranoxRuntimeClientProtocol> m_runtimeClient;
    std::optional<VeranoxCommand> m_cliCommand;
    jobs::Clock::Duration m_serviceReadinessTimeout;
    jobs::Clock::Duration m_startupProfileSettlementTimeout;
    VeranoxDiagnosticSession m_diagnostics;
    std::unique_ptr<VeranoxFailureObserving> m_failureNotifier;
    std::unique_ptr<VeranoxRuntimeLogPersisting> m_runtimeLogPersistence;
    VeranoxSessionIdentity m_sessionIdentity;
    std::unique_ptr<VeranoxTunnelSecretStoring> m_tunnelSecrets;

    ServiceState m_serviceState;
    QList<VeranoxProfile> m_profiles;
    QList<VeranoxTunnel> m_tunnels;
    QList<VeranoxPublication> m_publications;
    VeranoxConfig m_config;
    std::optional<VeranoxEditableConfig> m_editableConfig;
    VeranoxEnvironment m_environment{.tailscaledAvailable = true, .tailscaledBin = QStringLiteral("tailscaled")};
    bool m_isRefreshing = false;
    bool m_isDiagnosing = false;
    bool m_isSavingSettings = false;
    QString m_lastActionMessage;
    std::optional<VeranoxPathReport> m_pathReport;
    QList<VeranoxRuntimeLogEntry> m_runtimeLog;
    std::optional<QString> m_runtimeLogPersistenceError;
    bool m_isCreatingProfile = false;
    bool m_isQuitting = false;
    std::optional<QString> m_testingProfileName;
    std::optional<VeranoxProfileTestFeedback> m_profileTestFeedback;
    bool m_routerNeedsRestart = false;
    bool m_isRestartingRouter = false;
    std::optional<VeranoxLoginPrompt> m_loginPrompt;
    std::optional<VeranoxRouterRestartPrompt> m_routerRestartPrompt;
    VeranoxProfileDraft m_profileDraft;
    VeranoxRouterSettingsDraft m_routerDraft;
    QString m_diagnosticTarget;
    std::optional<VeranoxSettingsSelection> m_requestedSettingsSection;
    double m_menuBarPulse = 1.0;

    bool m_changeAnnounced = false;
    std::optional<bool> m_pulseRule;
    bool m_runtimeLogChanged = false; // since changed() was last emitted
    bool m_runtimeLogLoaded = false;
    std::uint64_t m_nextRuntimeLogSequence = 0; // of the last entry
    VeranoxUnwrittenLog m_unwrittenLog;
    mutable std::optional<VeranoxProfileNameInference> m_profileNames; // absent until asked for
    Generations m_generations;

    int m_recoveryAttempts = 0; // since the service was last heard of
    std::optional<jobs::Clock::Time> m_lastRecoveryAttemptAt;

    std::optional<StartupProfileSettlementObservation> m_startupProfileSettlementObservation;

    jobs::Job<> m_startServiceTask;
    jobs::Job<> m_startupProfileSettlementTimeoutTask;
    jobs::Job<> m_refreshTask;
    jobs::Job<> m_quitShutdownTask;
    jobs::Job<> m_pulseTask;
    jobs::Job<> m_runtimeLogWriteTask;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
