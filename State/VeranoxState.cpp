#include "State/VeranoxState.h"

VeranoxState::VeranoxState(std::unique_ptr<VeranoxFailureObserving> observer) : m_observer(std::move(observer))
{
    m_config.setValueBypassingBindings(VeranoxConfig{.router = VeranoxRouterConfig::defaults()});
    m_environment.setValueBypassingBindings(
        VeranoxEnvironment{.tailscaledAvailable = true, .tailscaledBin = QStringLiteral("tailscaled")});
}

VeranoxState::~VeranoxState() = default;

void VeranoxState::announceChange()
{
    if (std::exchange(m_changeAnnounced, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changeAnnounced = false;
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

void VeranoxState::observeFailureTransitions()
{
    if (m_observer)
        m_observer->observe({.service = m_serviceState,
            .isBusy = m_isRestartingRouter || m_isQuitting || m_isSavingSettings,
            .profiles = m_profiles,
            .tunnels = m_tunnels,
            .publications = m_publications});
}

// ---- Writes that can turn into news: each is observed right after.

void VeranoxState::setServiceState(ServiceState state)
{
    m_serviceState = std::move(state);
    observeFailureTransitions();
}

void VeranoxState::setProfiles(QList<VeranoxProfile> profiles)
{
    m_profiles = std::move(profiles);
    observeFailureTransitions();
}

void VeranoxState::setTunnels(QList<VeranoxTunnel> tunnels)
{
    m_tunnels = std::move(tunnels);
    observeFailureTransitions();
}

void VeranoxState::setPublications(QList<VeranoxPublication> publications)
{
    m_publications = std::move(publications);
    observeFailureTransitions();
}

void VeranoxState::setIsSavingSettings(bool on)
{
    m_isSavingSettings = on;
    observeFailureTransitions();
}

void VeranoxState::setIsRestartingRouter(bool on)
{
    m_isRestartingRouter = on;
    observeFailureTransitions();
}

void VeranoxState::setIsQuitting()
{
    m_isQuitting = true;
    observeFailureTransitions();
}

// ---- Changes that the service has answered

void VeranoxState::adoptTunnels(QList<VeranoxTunnel> fresh)
{
    ++m_generations.tunnels;
    setTunnels(std::move(fresh));
}

void VeranoxState::adoptPublications(QList<VeranoxPublication> fresh)
{
    ++m_generations.publications;
    setPublications(std::move(fresh));
}

void VeranoxState::conclude(const VeranoxActionOutcome &outcome)
{
    if (!outcome.isCancelled() && !outcome.message.isEmpty())
        m_lastActionMessage = outcome.message;
}
