#include "Core/VeranoxStore.h"
#include "Log/VeranoxRuntimeLogDiscarder.h"
#include "Tunnels/VeranoxNoTunnelSecrets.h"

VeranoxStore::VeranoxStore(jobs::MainQueue &queue, Collaborators collaborators)
    : m_apiClient(std::move(collaborators.apiClient)),
      m_runtimeClient(std::move(collaborators.runtimeClient)),
      m_cliCommand(std::move(collaborators.cliCommand)),
      m_serviceReadinessTimeout(collaborators.serviceReadinessTimeout),
      m_startupProfileSettlementTimeout(collaborators.startupProfileSettlementTimeout),
      m_diagnostics(std::move(collaborators.diagnostics)),
      m_failureNotifier(std::move(collaborators.failureNotifier)),
      m_runtimeLogPersistence(std::move(collaborators.runtimeLogPersistence)),
      m_sessionIdentity(std::move(collaborators.sessionIdentity)),
      m_tunnelSecrets(std::move(collaborators.tunnelSecrets)),
      m_config{.router = VeranoxRouterConfig::defaults()},
      m_profileDraft(VeranoxProfileDraft::empty(1)),
      m_routerDraft(VeranoxEditableRouterConfig::defaults()),
      m_jobs(queue)
{
    if (!m_runtimeLogPersistence)
        m_runtimeLogPersistence = std::make_unique<VeranoxRuntimeLogDiscarder>();
    if (!m_tunnelSecrets)
        m_tunnelSecrets = std::make_unique<VeranoxNoTunnelSecrets>(QString());
    for (const ChangeSignal signal : {&VeranoxStore::profilesChanged, &VeranoxStore::editableConfigChanged})
        connect(this, signal, this, [this] { m_profileNames.reset(); });
    for (const ChangeSignal signal : {&VeranoxStore::serviceStateChanged, &VeranoxStore::profilesChanged,
             &VeranoxStore::tunnelsChanged, &VeranoxStore::publicationsChanged})
        connect(this, signal, this, &VeranoxStore::followPulseRule);
    followPulseRule();
    // The client dies with the store, and its callbacks with the client.
    m_runtimeClient->onOutput = [this](const QString &line) { appendLog(line); };
    m_runtimeClient->onGUIServiceExit = [this](std::int32_t status) { handleGUIServiceExit(status); };
}

VeranoxStore::~VeranoxStore() = default;

template <class T> bool VeranoxStore::write(T &property, T value, ChangeSignal signal)
{
    if (property == value)
        return false;
    property = std::move(value);
    Q_EMIT(this->*signal)();
    announceChange();
    return true;
}

void VeranoxStore::announceChange()
{
    if (std::exchange(m_changeAnnounced, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changeAnnounced = false;
            if (std::exchange(m_runtimeLogChanged, false))
                Q_EMIT runtimeLogChanged();
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

void VeranoxStore::observeFailureTransitions()
{
    if (m_failureNotifier)
        m_failureNotifier->observe({.service = m_serviceState,
            .isBusy = m_isRestartingRouter || m_isQuitting || m_isSavingSettings,
            .profiles = m_profiles,
            .tunnels = m_tunnels,
            .publications = m_publications});
}

// ---- Writes that can turn into news: each is observed right after.

void VeranoxStore::setServiceState(ServiceState state)
{
    write(m_serviceState, std::move(state), &VeranoxStore::serviceStateChanged);
    observeFailureTransitions();
}

void VeranoxStore::setProfiles(QList<VeranoxProfile> profiles)
{
    write(m_profiles, std::move(profiles), &VeranoxStore::profilesChanged);
    observeFailureTransitions();
}

void VeranoxStore::setTunnels(QList<VeranoxTunnel> tunnels)
{
    write(m_tunnels, std::move(tunnels), &VeranoxStore::tunnelsChanged);
    observeFailureTransitions();
}

void VeranoxStore::setPublications(QList<VeranoxPublication> publications)
{
    write(m_publications, std::move(publications), &VeranoxStore::publicationsChanged);
    observeFailureTransitions();
}

void VeranoxStore::setIsQuitting()
{
    write(m_isQuitting, true, &VeranoxStore::isQuittingChanged);
    observeFailureTransitions();
}

void VeranoxStore::setIsRestartingRouter(bool on)
{
    write(m_isRestartingRouter, on, &VeranoxStore::isRestartingRouterChanged);
    observeFailureTransitions();
}

// ---- Plain writes

void VeranoxStore::setConfig(VeranoxConfig config)
{
    write(m_config, std::move(config), &VeranoxStore::configChanged);
}

void VeranoxStore::setEditableConfig(VeranoxEditableConfig config)
{
    write(m_editableConfig, std::optional(std::move(config)), &VeranoxStore::editableConfigChanged);
}

void VeranoxStore::setEnvironment(VeranoxEnvironment environment)
{
    write(m_environment, std::move(environment), &VeranoxStore::environmentChanged);
}

void VeranoxStore::setRuntimeLogPersistenceError(std::optional<QString> error)
{
    write(m_runtimeLogPersistenceError, std::move(error), &VeranoxStore::runtimeLogPersistenceErrorChanged);
}

void VeranoxStore::setIsRefreshing(bool on)
{
    write(m_isRefreshing, on, &VeranoxStore::isRefreshingChanged);
}

void VeranoxStore::setLastActionMessage(QString message)
{
    write(m_lastActionMessage, std::move(message), &VeranoxStore::lastActionMessageChanged);
}

void VeranoxStore::setRouterRestartPrompt(std::optional<VeranoxRouterRestartPrompt> prompt)
{
    write(m_routerRestartPrompt, std::move(prompt), &VeranoxStore::routerRestartPromptChanged);
}

void VeranoxStore::setRouterNeedsRestart(bool needs)
{
    write(m_routerNeedsRestart, needs, &VeranoxStore::routerNeedsRestartChanged);
}

void VeranoxStore::setMenuBarPulse(double phase)
{
    write(m_menuBarPulse, phase, &VeranoxStore::menuBarPulseChanged);
}

void VeranoxStore::setProfileDraft(VeranoxProfileDraft draft)
{
    write(m_profileDraft, std::move(draft), &VeranoxStore::profileDraftChanged);
}

void VeranoxStore::setRouterDraft(VeranoxRouterSettingsDraft draft)
{
    write(m_routerDraft, std::move(draft), &VeranoxStore::routerDraftChanged);
}

void VeranoxStore::setDiagnosticTarget(QString target)
{
    write(m_diagnosticTarget, std::move(target), &VeranoxStore::diagnosticTargetChanged);
}

void VeranoxStore::setRequestedSettingsSection(std::optional<VeranoxSettingsSelection> section)
{
    write(m_requestedSettingsSection, std::move(section), &VeranoxStore::requestedSettingsSectionChanged);
}
