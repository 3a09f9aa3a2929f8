#pragma once
#include "Core/MenuBarIcon.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include "Core/VeranoxWindowState.h"
#include "Log/VeranoxActivityLog.h"
#include "Profiles/VeranoxProfileEditing.h"
#include "Publications/VeranoxPublicationOperations.h"
#include "Tunnels/VeranoxTunnelOperations.h"
#include "Tunnels/VeranoxTunnelPasswords.h"
#include <QUrl>

// The one object of the application that views know: every view reads it, every user action is one of its operations,
// every change of the local service's state lands in it. Main thread only.
//
// What it says can be followed by reading it inside of a binding, as VeranoxState.h tells; changed() tells of anything.
// lastActionMessage holds the outcome of the last user action as a finished sentence; failures of a refresh go to
// serviceState instead.
class VeranoxStore final : public QObject {
    Q_OBJECT

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

    // ---- The service, as it was last heard of
    const ServiceState &serviceState() const { return m_state.serviceState(); }
    const QList<VeranoxProfile> &profiles() const { return m_state.profiles(); }
    const QList<VeranoxTunnel> &tunnels() const { return m_state.tunnels(); }
    const QList<VeranoxPublication> &publications() const { return m_state.publications(); }
    const VeranoxConfig &config() const { return m_state.config(); }
    const std::optional<VeranoxEditableConfig> &editableConfig() const { return m_state.editableConfig(); }
    const VeranoxEnvironment &environment() const { return m_state.environment(); }

    QString statusTitle() const;
    QString routerStatusDetail() const;
    bool statusActionRestartsService() const;
    MenuBarIcon menuBarIcon() const;
    double menuBarPulse() const;
    QUrl pacURL() const; // where the service offers its proxy configuration

    // ---- What the application does
    bool isRefreshing() const { return m_state.isRefreshing(); }
    bool isSavingSettings() const { return m_state.isSavingSettings(); }
    bool isRestartingRouter() const { return m_state.isRestartingRouter(); }
    bool isQuitting() const { return m_state.isQuitting(); }
    bool isDiagnosing() const { return m_window.isDiagnosing(); }
    bool isCreatingProfile() const { return m_editing.isCreatingProfile(); }
    const std::optional<QString> &testingProfileName() const { return m_editing.testingProfileName(); }
    bool routerNeedsRestart() const { return m_state.routerNeedsRestart(); }
    const QString &lastActionMessage() const { return m_state.lastActionMessage(); }

    // ---- Start, refresh, stop
    // Starts the service, reads everything once, then keeps on reading it on schedule. The log is told how that went,
    // and once more when the profiles have settled or 65 seconds have passed. Called once, by the launch.
    jobs::Async<> start();

    // Attaches to the service that answers, or launches our own and waits until it answers. The outcome is in
    // serviceState. Callers at the same time share one start.
    jobs::Async<> ensureServiceStarted();

    // ensureServiceStarted() and refresh() as a job of its own, for a user who asked for it.
    void startRouter();

    // Stops the service and starts it again, also when none runs. A call while another restarts does nothing.
    jobs::Async<> restartRouterForPendingChangesAsync();
    void restartRouterForPendingChanges(); // the same as a job of its own

    // What follows when the service that we launched ended although nobody stopped it: it is started again after 1, 2
    // and 4 seconds; a fourth crash within a minute of the last attempt ends that.
    void handleGUIServiceExit(std::int32_t status);

    // Brings every value into step with the service. Returns at once while another refresh runs.
    jobs::Async<> refresh();
    void requestRefresh(); // the same as a job of its own
    void startRefreshLoop(); // refreshes on schedule, if none does; the first one comes one delay after the call

    // Stops the service in order. The first call does the work; every other waits for that one's end.
    jobs::Async<> quitAndShutdown();

    // The last word before the process ends: immediate, idempotent.
    void shutdown();

    // ---- Profiles and the router's settings
    const VeranoxProfileDraft &profileDraft() const { return m_editing.profileDraft(); }
    void setProfileDraft(VeranoxProfileDraft draft) { m_editing.setProfileDraft(std::move(draft)); }
    bool profileDraftHasChanges() const { return m_editing.profileDraftHasChanges(); }
    const VeranoxRouterSettingsDraft &routerDraft() const { return m_editing.routerDraft(); }
    void setRouterDraft(VeranoxRouterSettingsDraft draft) { m_editing.setRouterDraft(std::move(draft)); }
    bool routerDraftHasChanges() const { return m_editing.routerDraftHasChanges(); }
    const std::optional<VeranoxProfileTestFeedback> &profileTestFeedback() const
    {
        return m_editing.profileTestFeedback();
    }
    const std::optional<VeranoxLoginPrompt> &loginPrompt() const { return m_editing.loginPrompt(); }
    const std::optional<VeranoxRouterRestartPrompt> &routerRestartPrompt() const
    {
        return m_editing.routerRestartPrompt();
    }

    // ---- Tunnels: see VeranoxTunnelOperations
    QList<std::pair<VeranoxProfile, QList<VeranoxTunnel>>> tunnelsByProfile() const { return m_tunnels.byProfile(); }
    jobs::Async<VeranoxTunnelDraft> tunnelDraft(VeranoxTunnel tunnel) { return m_tunnels.draft(std::move(tunnel)); }

    // These two give the sentence of what failed; an empty one when the calling job was cancelled.
    jobs::Async<std::optional<QString>> saveTunnelDraft(VeranoxTunnelDraft draft);
    jobs::Async<std::optional<QString>> deleteTunnel(QString name);

    jobs::Async<VeranoxActionOutcome> restartTunnel(QString name);
    jobs::Async<VeranoxActionOutcome> setTunnelEnabled(QString name, bool enabled);
    void adoptTunnels(QList<VeranoxTunnel> fresh) { m_state.adoptTunnels(std::move(fresh)); }

    // ---- Publications: see VeranoxPublicationOperations
    QList<VeranoxProfile> publishableProfiles() const { return m_publications.publishableProfiles(); }
    QList<std::pair<VeranoxProfile, QList<VeranoxPublication>>> publicationsByProfile() const
    {
        return m_publications.byProfile();
    }
    std::optional<QString> publicationsUnavailableReason() const { return m_publications.unavailableReason(); }
    jobs::Async<VeranoxPublicationActionResult> savePublicationDraft(VeranoxPublicationDraft draft);
    jobs::Async<VeranoxPublicationActionResult> deletePublication(QString name);
    jobs::Async<VeranoxPublicationActionResult> restartPublication(QString name);
    jobs::Async<VeranoxPublicationActionResult> setPublicationEnabled(QString name, bool enabled);
    void adoptPublications(QList<VeranoxPublication> fresh) { m_state.adoptPublications(std::move(fresh)); }

    // ---- Diagnosis, and the settings window
    const std::optional<VeranoxPathReport> &pathReport() const { return m_window.pathReport(); }
    const QString &diagnosticTarget() const { return m_window.diagnosticTarget(); }
    void setDiagnosticTarget(QString target) { m_window.setDiagnosticTarget(std::move(target)); }
    const VeranoxDiagnosticSession &diagnostics() const { return m_diagnostics; }
    const std::optional<VeranoxSettingsSelection> &requestedSettingsSection() const
    {
        return m_window.requestedSection();
    }
    void setRequestedSettingsSection(std::optional<VeranoxSettingsSelection> section)
    {
        m_window.setRequestedSection(std::move(section));
    }

    // ---- Activity log: see VeranoxActivityLog
    const QList<VeranoxRuntimeLogEntry> &runtimeLog() const { return m_log.entries(); }
    const std::optional<QString> &runtimeLogPersistenceError() const { return m_log.persistenceError(); }
    void appendLog(const QString &message, const VeranoxLogDetails &details = {}) { m_log.append(message, details); }
    jobs::Async<> prepareRuntimeLog() { return m_log.prepare(); }
    std::optional<QString> inferredProfileName(const QString &line) const { return m_log.inferredProfileName(line); }
    const VeranoxActivityLog &activityLog() const { return m_log; }

Q_SIGNALS:
    void changed(); // anything of the above; at most once per turn of the event loop, after the writes

private:
    struct Service; // what starts, reads and stops the service

    jobs::Async<> performStartRouter();

    const VeranoxDiagnosticSession m_diagnostics;
    VeranoxState m_state;
    VeranoxProfileEditing m_editing;
    VeranoxWindowState m_window;
    std::unique_ptr<VeranoxAPIClientProtocol> m_apiClient;
    std::unique_ptr<VeranoxRuntimeClientProtocol> m_runtimeClient;
    VeranoxActivityLog m_log;
    VeranoxTunnelPasswords m_passwords;
    VeranoxTunnelOperations m_tunnels;
    VeranoxPublicationOperations m_publications;
    std::unique_ptr<Service> m_service;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
