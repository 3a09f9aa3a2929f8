#include "Core/VeranoxStore.h"
#include "Core/VeranoxDerivedState.h"
#include "Core/VeranoxMenuBarPulse.h"
#include "Core/VeranoxRecoveryBudget.h"
#include "Core/VeranoxRefresh.h"
#include "Core/VeranoxRefreshLoop.h"
#include "Core/VeranoxServiceStart.h"
#include "Core/VeranoxShutdown.h"
#include "Core/VeranoxStartup.h"
#include "Core/VeranoxStartupSettlement.h"
#include "Core/VeranoxSupervision.h"

// Each after those that it works with, so that its jobs end before theirs.
struct VeranoxStore::Service {
    Service(jobs::MainQueue &queue, VeranoxStore &store, Collaborators &with)
        : recovery(queue.clock()),
          settlement(queue, store.m_state, store.m_log, with.startupProfileSettlementTimeout),
          refresh({store.m_state, store.m_editing, *store.m_apiClient, store.m_passwords, store.m_log, recovery,
              settlement}),
          loop(queue, store.m_state, refresh),
          start(queue,
              {store.m_state, store.m_log, *store.m_apiClient, *store.m_runtimeClient, recovery,
                  std::move(with.cliCommand), with.serviceReadinessTimeout}),
          supervision(queue,
              {store.m_state, store.m_editing, store.m_log, *store.m_apiClient, *store.m_runtimeClient, recovery, start,
                  refresh, loop}),
          startup({store.m_state, store.m_log, supervision, loop, settlement}),
          pulse(queue, store.m_state),
          shutdown(queue,
              {store.m_state, store.m_log, *store.m_apiClient, *store.m_runtimeClient, start, loop, settlement, pulse})
    {
    }

    VeranoxRecoveryBudget recovery;
    VeranoxStartupSettlement settlement;
    VeranoxRefresh refresh;
    VeranoxRefreshLoop loop;
    VeranoxServiceStart start;
    VeranoxSupervision supervision;
    VeranoxStartup startup;
    VeranoxMenuBarPulse pulse;
    VeranoxShutdown shutdown;
};

VeranoxStore::VeranoxStore(jobs::MainQueue &queue, Collaborators collaborators)
    : m_diagnostics(std::move(collaborators.diagnostics)),
      m_state(std::move(collaborators.failureNotifier)),
      m_editing(m_state),
      m_window(m_state),
      m_apiClient(std::move(collaborators.apiClient)),
      m_runtimeClient(std::move(collaborators.runtimeClient)),
      m_log(queue, m_state, std::move(collaborators.runtimeLogPersistence), m_diagnostics,
          std::move(collaborators.sessionIdentity)),
      m_passwords(queue, m_state, *m_apiClient, std::move(collaborators.tunnelSecrets)),
      m_tunnels(m_state, *m_apiClient, m_passwords),
      m_publications(m_state, *m_apiClient),
      m_service(std::make_unique<Service>(queue, *this, collaborators)),
      m_jobs(queue)
{
    connect(&m_state, &VeranoxState::changed, this, &VeranoxStore::changed);
    m_runtimeClient->onOutput = [this](const QString &line) { appendLog(line); };
    m_runtimeClient->onGUIServiceExit = [this](std::int32_t status) { handleGUIServiceExit(status); };
}

VeranoxStore::~VeranoxStore()
{
    // The client outlives those whom it calls.
    m_runtimeClient->onOutput = {};
    m_runtimeClient->onGUIServiceExit = {};
}

QString VeranoxStore::statusTitle() const
{
    return VeranoxDerivedState::statusTitle(m_state);
}

QString VeranoxStore::routerStatusDetail() const
{
    return VeranoxDerivedState::routerStatusDetail(m_state, *m_runtimeClient);
}

bool VeranoxStore::statusActionRestartsService() const
{
    return VeranoxDerivedState::statusActionRestartsService(m_state);
}

MenuBarIcon VeranoxStore::menuBarIcon() const
{
    return VeranoxDerivedState::menuBarIcon(m_state);
}

double VeranoxStore::menuBarPulse() const
{
    return m_service->pulse.phase();
}

QUrl VeranoxStore::pacURL() const
{
    return VeranoxDerivedState::pacURL(m_state);
}

jobs::Async<> VeranoxStore::start()
{
    return m_service->startup.run();
}

jobs::Async<> VeranoxStore::ensureServiceStarted()
{
    return m_service->start.ensure();
}

void VeranoxStore::startRouter()
{
    m_jobs.start(performStartRouter());
}

jobs::Async<> VeranoxStore::performStartRouter()
{
    m_state.conclude(co_await m_service->supervision.startRouter());
}

jobs::Async<> VeranoxStore::restartRouterForPendingChangesAsync()
{
    m_state.conclude(co_await m_service->supervision.restart());
}

void VeranoxStore::restartRouterForPendingChanges()
{
    m_jobs.start(restartRouterForPendingChangesAsync());
}

void VeranoxStore::handleGUIServiceExit(std::int32_t status)
{
    m_service->supervision.handleExit(status);
}

jobs::Async<> VeranoxStore::refresh()
{
    return m_service->refresh.run();
}

void VeranoxStore::requestRefresh()
{
    m_jobs.start(refresh());
}

void VeranoxStore::startRefreshLoop()
{
    m_service->loop.start();
}

jobs::Async<> VeranoxStore::quitAndShutdown()
{
    return m_service->shutdown.quit();
}

void VeranoxStore::shutdown()
{
    m_service->shutdown.now();
}
