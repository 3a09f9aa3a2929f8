// One refresh, and the schedule on which it is repeated.
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration settledInterval = 15s;
constexpr jobs::Clock::Duration settlingInterval = 2s;
constexpr int settlingPollLimit = 30; // then a profile that never settles costs no more than a settled one

} // namespace

struct VeranoxStore::Fetches {
    explicit Fetches(VeranoxAPIClientProtocol &client)
        : profiles(jobs::fork(client.fetchProfiles())),
          config(jobs::fork(client.fetchConfig())),
          editableConfig(jobs::fork(client.fetchEditableConfig())),
          environment(jobs::fork(client.fetchEnvironment())),
          tunnels(jobs::fork(client.fetchTunnels())),
          publications(jobs::fork(client.fetchPublications()))
    {
    }

    void cancel()
    {
        profiles.cancel();
        config.cancel();
        editableConfig.cancel();
        environment.cancel();
        tunnels.cancel();
        publications.cancel();
    }

    // Ends when every fetch has; takes what has not been taken, and drops it.
    jobs::Async<> settled()
    {
        co_await profiles;
        co_await config;
        co_await editableConfig;
        co_await environment;
        co_await tunnels;
        co_await publications;
    }

    jobs::Child<VeranoxAPIResult<QList<VeranoxProfile>>> profiles;
    jobs::Child<VeranoxAPIResult<VeranoxConfig>> config;
    jobs::Child<VeranoxAPIResult<VeranoxEditableConfig>> editableConfig;
    jobs::Child<VeranoxAPIResult<VeranoxEnvironment>> environment;
    jobs::Child<VeranoxAPIResult<QList<VeranoxTunnel>>> tunnels;
    jobs::Child<VeranoxAPIResult<QList<VeranoxPublication>>> publications;
};

void VeranoxStore::requestRefresh()
{
    m_jobs.start(refresh());
}

jobs::Async<> VeranoxStore::refresh()
{
    const auto bound = VeranoxDiagnosticOperationContext::correlationID();
    const jobs::AmbientScope scope(bound ? *bound : makeVeranoxIdentifier());
    co_await performRefresh();
}

jobs::Async<> VeranoxStore::performRefresh()
{
    if (m_isRefreshing)
        co_return;
    setIsRefreshing(true);
    const Generations generations = m_generations;
    Fetches fetches(*m_apiClient);
    const bool routerDraftWasEdited = routerDraftHasChanges();

    if (const auto required = co_await applyRequired(&fetches); !required) {
        co_await failRefresh(&fetches, required.error());
    } else {
        co_await applyOptional(&fetches, generations);
        if (!routerDraftWasEdited && m_editableConfig)
            setRouterDraft(VeranoxRouterSettingsDraft(m_editableConfig->router));
        recordServiceContact();
        if (!profilesSettling())
            finishStartupProfileSettlement(u"settled"_s);
    }
    setIsRefreshing(false);
}

// Without these three nothing else can be trusted. The order is fixed: what came before the failure stays applied.
VeranoxAPICall<> VeranoxStore::applyRequired(Fetches *fetches)
{
    auto profiles = co_await fetches->profiles;
    if (!profiles)
        co_return std::unexpected(profiles.error());
    setProfiles(*std::move(profiles));

    auto config = co_await fetches->config;
    if (!config)
        co_return std::unexpected(config.error());
    setConfig(*std::move(config));

    auto editableConfig = co_await fetches->editableConfig;
    if (!editableConfig)
        co_return std::unexpected(editableConfig.error());
    setEditableConfig(*std::move(editableConfig));
    co_return VeranoxAPIResult<>();
}

// A fault in one of these leaves its old value; it says nothing about the service as a whole. A list that a mutation
// has replaced since the refresh began is older than what stands there, and is dropped.
jobs::Async<> VeranoxStore::applyOptional(Fetches *fetches, Generations atStart)
{
    if (auto environment = co_await fetches->environment)
        setEnvironment(*std::move(environment));
    if (auto tunnels = co_await fetches->tunnels) {
        if (atStart.tunnels == m_generations.tunnels)
            setTunnels(*std::move(tunnels));
        co_await republishTunnelSecrets();
    }
    if (auto publications = co_await fetches->publications;
        publications && atStart.publications == m_generations.publications)
        setPublications(*std::move(publications));
}

jobs::Async<> VeranoxStore::failRefresh(Fetches *fetches, VeranoxAPIFailure failure)
{
    fetches->cancel();
    co_await fetches->settled();
    if (failure.isCancellation())
        co_return;
    const ServiceState failed = ServiceState::error(failure.localizedDescription());
    if (m_serviceState != failed) // a lasting failure is logged once, not with every refresh
        appendLog(u"[GUI] status refresh failed: "_s + failed.message());
    setServiceState(failed);
}

void VeranoxStore::adoptTunnels(QList<VeranoxTunnel> fresh)
{
    ++m_generations.tunnels;
    setTunnels(std::move(fresh));
}

void VeranoxStore::adoptPublications(QList<VeranoxPublication> fresh)
{
    ++m_generations.publications;
    setPublications(std::move(fresh));
}

void VeranoxStore::startRefreshLoop()
{
    if (!m_refreshTask)
        m_refreshTask = m_jobs.start(refreshLoop());
}

void VeranoxStore::cancelRefreshLoop()
{
    std::exchange(m_refreshTask, {}).cancel();
}

// While profiles settle the store looks often, but only for a minute; then it waits for them at its usual pace.
jobs::Async<> VeranoxStore::refreshLoop()
{
    if (jobs::this_job::cancelled())
        co_return;
    int settlingPolls = profilesSettling() ? 1 : 0;
    jobs::Clock::Duration delay = profilesSettling() ? settlingInterval : settledInterval;
    for (;;) {
        co_await jobs::sleep(delay); // cut short or not, a refresh follows
        co_await refresh();
        if (jobs::this_job::cancelled())
            co_return;
        const bool settling = profilesSettling();
        delay = settling && settlingPolls < settlingPollLimit ? settlingInterval : settledInterval;
        settlingPolls = settling ? settlingPolls + 1 : 0;
    }
}
