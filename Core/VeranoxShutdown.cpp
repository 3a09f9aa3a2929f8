#include "Core/VeranoxShutdown.h"
#include "Core/VeranoxMenuBarPulse.h"
#include "Core/VeranoxRefreshLoop.h"
#include "Core/VeranoxServiceStart.h"
#include "Core/VeranoxStartupSettlement.h"
#include "Log/VeranoxActivityLog.h"
#include "State/VeranoxState.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration quitSettleTime = 350ms; // for the service to let go of its connections

} // namespace

VeranoxShutdown::VeranoxShutdown(jobs::MainQueue &queue, Collaborators with) : m_with(with), m_jobs(queue) { }

jobs::Async<> VeranoxShutdown::quit()
{
    if (!m_task)
        m_task = m_jobs.start(perform());
    co_await m_task;
}

jobs::Async<> VeranoxShutdown::perform()
{
    VeranoxState &state = m_with.state;
    state.setIsQuitting();
    state.announceAction(u"Stopping Veranox and profile connections..."_s);
    m_with.loop.cancel();
    m_with.settlement.cancel();
    m_with.serviceStart.cancel(); // else it could launch a service that nobody would stop
    if (state.serviceState().isOnline())
        co_await requestServiceShutdown();
    co_await m_with.runtime.shutdown();
    state.setServiceState(ServiceState::offline());
    state.setRouterNeedsRestart(false);
    state.conclude(VeranoxActionOutcome::success(u"Veranox stopped."_s));
}

jobs::Async<> VeranoxShutdown::requestServiceShutdown()
{
    if (const auto request = co_await m_with.client.shutdown(); !request) {
        m_with.log.append(u"[GUI] shutdown request failed: "_s + request.error().localizedDescription());
        co_return;
    }
    co_await jobs::sleep(quitSettleTime);
    m_with.log.append(u"[GUI] shutdown requested"_s);
}

void VeranoxShutdown::now()
{
    m_with.loop.cancel();
    m_with.settlement.cancel();
    m_with.pulse.stop();
    m_with.runtime.terminateImmediately();
}
