#include "Core/VeranoxSupervision.h"
#include "Core/VeranoxDerivedState.h"
#include "Core/VeranoxRecoveryBudget.h"
#include "Core/VeranoxRefresh.h"
#include "Core/VeranoxRefreshLoop.h"
#include "Core/VeranoxServiceStart.h"
#include "Log/VeranoxActivityLog.h"
#include "Profiles/VeranoxProfileEditing.h"
#include "State/VeranoxRaisedFlag.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = VeranoxActionOutcome;

namespace {

constexpr jobs::Clock::Duration restartSettleTime = 450ms; // for the service to let go of its ports

} // namespace

VeranoxSupervision::VeranoxSupervision(jobs::MainQueue &queue, Collaborators with) : m_with(with), m_jobs(queue) { }

jobs::Async<> VeranoxSupervision::startAndRefresh()
{
    co_await m_with.serviceStart.ensure();
    co_await m_with.refresh.run();
}

jobs::Async<Outcome> VeranoxSupervision::startRouter()
{
    co_await startAndRefresh();
    if (m_with.state.isQuitting())
        co_return Outcome::cancelled();
    co_return m_with.state.serviceState().isOnline()
        ? Outcome::success(u"Router is active and managed by Veranox service."_s)
        : Outcome::failure({});
}

// ---- Recovery

void VeranoxSupervision::handleExit(std::int32_t status)
{
    VeranoxState &state = m_with.state;
    if (state.isQuitting() || state.isRestartingRouter())
        return;
    m_with.log.append(u"[GUI] service exited unexpectedly with status %1"_s.arg(status));
    state.setServiceState(ServiceState::error(u"GUI service stopped unexpectedly (status %1)."_s.arg(status)));
    if (const auto delay = m_with.recovery.take()) {
        m_jobs.start(recover(*delay));
        return;
    }
    m_with.log.append(u"[GUI] service crashed %1 times; stopping automatic recovery"_s.arg(m_with.recovery.taken()));
    state.setServiceState(
        ServiceState::error(u"GUI service keeps crashing. Check the runtime log, then restart Veranox manually."_s));
}

jobs::Async<> VeranoxSupervision::recover(jobs::Clock::Duration delay)
{
    const VeranoxState &state = m_with.state;
    if (state.isQuitting() || state.isRestartingRouter())
        co_return;
    co_await jobs::sleep(delay);
    if (state.isQuitting() || state.isRestartingRouter())
        co_return;
    co_await startAndRefresh();
}

// ---- Restart

jobs::Async<Outcome> VeranoxSupervision::restart()
{
    VeranoxState &state = m_with.state;
    if (state.isRestartingRouter())
        co_return Outcome::cancelled();
    m_with.editing.closeRouterRestartPrompt();
    const VeranoxRaisedFlag restarting(state, &VeranoxState::setIsRestartingRouter);
    state.announceAction(u"Restarting router..."_s);
    m_with.loop.cancel();
    co_await requestShutdown();
    co_await m_with.runtime.shutdown();
    if (state.isQuitting()) // it must not find a service that is started behind its back
        co_return Outcome::cancelled();
    state.setServiceState(ServiceState::starting());
    co_await startAndRefresh();
    if (state.isQuitting())
        co_return Outcome::cancelled();
    m_with.loop.start();
    co_return outcomeOfRestart();
}

// The service may be dead already: a failure stops nothing.
jobs::Async<> VeranoxSupervision::requestShutdown()
{
    const auto request = co_await m_with.client.shutdown();
    if (!request) {
        if (!request.error().isCancellation())
            m_with.log.append(u"[GUI] restart shutdown failed: "_s + request.error().localizedDescription());
        co_return;
    }
    co_await jobs::sleep(restartSettleTime);
    m_with.log.append(u"[GUI] restart requested"_s);
}

Outcome VeranoxSupervision::outcomeOfRestart()
{
    if (!m_with.state.serviceState().isOnline())
        return Outcome::failure(
            u"Router restart failed: "_s + VeranoxDerivedState::routerStatusDetail(m_with.state, m_with.runtime));
    m_with.state.setRouterNeedsRestart(false);
    return Outcome::success(u"Router restarted. Changes are active."_s);
}
