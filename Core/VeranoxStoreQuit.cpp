// The two ends of the store: an orderly quit, and the last word when there is no time for one.
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration quitSettleTime = 350ms; // for the service to let go of its connections

} // namespace

jobs::Async<> VeranoxStore::quitAndShutdown()
{
    if (!m_quitShutdownTask)
        m_quitShutdownTask = m_jobs.start(performQuit());
    co_await m_quitShutdownTask;
}

jobs::Async<> VeranoxStore::performQuit()
{
    setIsQuitting();
    setLastActionMessage(u"Stopping Veranox and profile connections..."_s);
    cancelRefreshLoop();
    cancelStartupProfileSettlementObservation();
    m_startServiceTask.cancel(); // else it could launch a service that nobody would stop
    if (m_serviceState.isOnline())
        co_await requestServiceShutdown();
    co_await m_runtimeClient->shutdown();
    setServiceState(ServiceState::offline());
    setRouterNeedsRestart(false);
    setLastActionMessage(u"Veranox stopped."_s);
}

jobs::Async<> VeranoxStore::requestServiceShutdown()
{
    if (const auto request = co_await m_apiClient->shutdown(); !request) {
        appendLog(u"[GUI] shutdown request failed: "_s + request.error().localizedDescription());
        co_return;
    }
    co_await jobs::sleep(quitSettleTime);
    appendLog(u"[GUI] shutdown requested"_s);
}

void VeranoxStore::shutdown()
{
    cancelRefreshLoop();
    cancelStartupProfileSettlementObservation();
    stopPulse();
    m_runtimeClient->terminateImmediately();
}
