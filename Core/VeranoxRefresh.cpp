#include "Core/VeranoxRefresh.h"
#include "API/Client/VeranoxDiagnosticSession.h"
#include "Core/VeranoxRecoveryBudget.h"
#include "Core/VeranoxStartupSettlement.h"
#include "Log/VeranoxActivityLog.h"
#include "Profiles/VeranoxProfileEditing.h"
#include "State/VeranoxRaisedFlag.h"
#include "Tunnels/VeranoxTunnelPasswords.h"

using namespace Qt::StringLiterals;

struct VeranoxRefresh::Fetches {
    explicit Fetches(VeranoxAPIClientProtocol &client)
        : profiles(jobs::fork(client.fetchProfiles())),
          config(jobs::fork(client.fetchConfig())),
          editableConfig(jobs::fork(client.fetchEditableConfig())),
          environment(jobs::fork(client.fetchEnvironment())),
          tunnels(jobs::fork(client.fetchTunnels())),
          publications(jobs::fork(client.fetchPublications()))
    {
    }

    jobs::Child<VeranoxAPIResult<QList<VeranoxProfile>>> profiles;
    jobs::Child<VeranoxAPIResult<VeranoxConfig>> config;
    jobs::Child<VeranoxAPIResult<VeranoxEditableConfig>> editableConfig;
    jobs::Child<VeranoxAPIResult<VeranoxEnvironment>> environment;
    jobs::Child<VeranoxAPIResult<QList<VeranoxTunnel>>> tunnels;
    jobs::Child<VeranoxAPIResult<QList<VeranoxPublication>>> publications;
};

jobs::Async<> VeranoxRefresh::run()
{
    const auto bound = VeranoxDiagnosticOperationContext::correlationID();
    const jobs::AmbientScope scope(bound ? *bound : makeVeranoxIdentifier());
    co_await perform();
}

bool VeranoxRefresh::isUnwanted() const
{
    return jobs::this_job::cancelled() || m_with.state.isQuitting();
}

jobs::Async<> VeranoxRefresh::perform()
{
    if (m_with.state.isRefreshing() || isUnwanted())
        co_return;
    const VeranoxRaisedFlag refreshing(m_with.state, &VeranoxState::setIsRefreshing);
    const VeranoxState::Generations generations = m_with.state.generations();
    Fetches fetches(m_with.client);
    const VeranoxRouterSettingsDraft draftAtStart = m_with.editing.routerDraft();
    const bool draftWasEdited = m_with.editing.routerDraftHasChanges();

    const auto required = co_await applyRequired(&fetches);
    if (!required) {
        co_await end(&fetches);
        if (!isUnwanted() && !required.error().isCancellation())
            fail(required.error());
        co_return;
    }
    co_await applyOptional(&fetches, generations);
    if (isUnwanted())
        co_return;
    if (!draftWasEdited && m_with.editing.routerDraft() == draftAtStart) // a draft with edits is never overwritten
        m_with.editing.setRouterDraft(VeranoxRouterSettingsDraft(m_with.state.editableConfig()->router));
    succeed();
}

// Without these three nothing else can be trusted. The order is fixed: what came before the failure stays applied.
VeranoxAPICall<> VeranoxRefresh::applyRequired(Fetches *fetches)
{
    auto profiles = co_await fetches->profiles;
    if (!profiles)
        co_return std::unexpected(profiles.error());
    m_with.state.setProfiles(*std::move(profiles));

    auto config = co_await fetches->config;
    if (!config)
        co_return std::unexpected(config.error());
    m_with.state.setConfig(*std::move(config));

    auto editableConfig = co_await fetches->editableConfig;
    if (!editableConfig)
        co_return std::unexpected(editableConfig.error());
    m_with.state.setEditableConfig(*std::move(editableConfig));
    co_return VeranoxAPIResult<>();
}

// A fault in one of these leaves its old value; it says nothing about the service as a whole. A list that a mutation
// has replaced since the refresh began is older than what stands there, and is dropped.
jobs::Async<> VeranoxRefresh::applyOptional(Fetches *fetches, VeranoxState::Generations atStart)
{
    VeranoxState &state = m_with.state;
    if (auto environment = co_await fetches->environment)
        state.setEnvironment(*std::move(environment));
    if (auto tunnels = co_await fetches->tunnels) {
        if (atStart.tunnels == state.generations().tunnels)
            state.setTunnels(*std::move(tunnels));
        co_await m_with.passwords.republish();
    }
    if (auto publications = co_await fetches->publications;
        publications && atStart.publications == state.generations().publications)
        state.setPublications(*std::move(publications));
}

// Ends when every fetch has.
jobs::Async<> VeranoxRefresh::end(Fetches *fetches)
{
    fetches->profiles.cancel();
    fetches->config.cancel();
    fetches->editableConfig.cancel();
    fetches->environment.cancel();
    fetches->tunnels.cancel();
    fetches->publications.cancel();
    co_await fetches->profiles;
    co_await fetches->config;
    co_await fetches->editableConfig;
    co_await fetches->environment;
    co_await fetches->tunnels;
    co_await fetches->publications;
}

void VeranoxRefresh::fail(const VeranoxAPIFailure &failure)
{
    const ServiceState failed = ServiceState::error(failure.localizedDescription());
    if (m_with.state.serviceState() != failed) // a lasting failure is logged once, not with every refresh
        m_with.log.append(u"[GUI] status refresh failed: "_s + failed.message());
    m_with.state.setServiceState(failed);
}

void VeranoxRefresh::succeed()
{
    m_with.state.setServiceState(ServiceState::online());
    m_with.recovery.refill();
    m_with.settlement.finishIfSettled();
}
