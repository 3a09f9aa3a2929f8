// The life of the local service as the store directs it: attach to the one that answers or start our own, wait for it,
// bring it back after a crash, restart it on request.
#include "Base/Failures/VeranoxFailure.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration readinessPollInterval = 400ms;
constexpr jobs::Clock::Duration restartSettleTime = 450ms; // for the service to let go of its ports
constexpr jobs::Clock::Duration recoveryWindow = 60s; // an attempt further back says nothing about this crash
constexpr int recoveryAttemptLimit = 3;

// A service that crashed once may just be unlucky, one that crashes again needs a cause to go away first: each attempt
// of a row waits twice as long as the one before, 1, 2 and 4 seconds.
constexpr jobs::Clock::Duration recoveryDelay(int attemptsBefore)
{
    return 1s * (1 << attemptsBefore);
}

} // namespace

// ---- Start

jobs::Async<> VeranoxStore::ensureServiceStarted()
{
    if (m_isQuitting) // nobody would stop what is started now
        co_return;
    if (!m_startServiceTask.running())
        m_startServiceTask = m_jobs.start(performServiceStart());
    co_await m_startServiceTask;
}

jobs::Async<> VeranoxStore::performServiceStart()
{
    appendLog(u"[GUI] probing local service health at 127.0.0.1:43200"_s);
    const bool answers = co_await m_apiClient->healthCheck();
    if (jobs::this_job::cancelled())
        co_return;
    if (answers) {
        recordServiceContact();
        appendLog(u"[GUI] local service health check succeeded; connected to existing service"_s);
        co_return;
    }
    appendLog(u"[GUI] local service health check failed; starting bundled service"_s);
    if (!m_cliCommand) {
        recordServiceStartFailure(u"Veranox's bundled service could not be found. Reinstall Veranox and try again."_s);
        co_return;
    }
    setServiceState(ServiceState::starting());
    co_await m_runtimeClient->terminateStaleGUIService(*m_cliCommand);
    if (jobs::this_job::cancelled() || !launchService())
        co_return;
    const bool isReady = co_await serviceBecomesReady();
    if (!jobs::this_job::cancelled())
        concludeServiceStart(isReady);
}

// False when there is nothing to wait for.
bool VeranoxStore::launchService()
{
    try {
        m_runtimeClient->startGUI(*m_cliCommand);
        return true;
    } catch (...) {
        const auto failure = std::current_exception();
        if (!isCancellation(failure))
            recordServiceStartFailure(describeFailure(failure));
        return false;
    }
}

jobs::Async<bool> VeranoxStore::serviceBecomesReady()
{
    const jobs::Clock &clock = jobs::this_job::clock();
    const auto deadline = clock.after(m_serviceReadinessTimeout);
    while (clock.now() < deadline && !jobs::this_job::cancelled()) {
        if (co_await m_apiClient->healthCheck())
            co_return true;
        const auto process = m_runtimeClient->guiProcess();
        if (!process || !process->isRunning) // no sense in waiting for a dead one
            co_return false;
        if (co_await jobs::sleep(readinessPollInterval) == jobs::Sleep::cut)
            co_return false;
    }
    co_return false;
}

// A service that still runs at the end of our patience is left running: it may answer a later refresh.
void VeranoxStore::concludeServiceStart(bool isReady)
{
    if (isReady) {
        recordServiceContact();
        appendLog(u"[GUI] service ready on 127.0.0.1:43200"_s);
        return;
    }
    const auto process = m_runtimeClient->guiProcess();
    if (process && !process->isRunning)
        recordServiceStartFailure(
            u"GUI service exited on launch (status %1). Check the runtime log for the cause."_s.arg(
                process->terminationStatus));
    else
        recordServiceStartFailure(u"GUI service did not become reachable on 127.0.0.1:43200."_s);
}

void VeranoxStore::recordServiceContact()
{
    setServiceState(ServiceState::online());
    forgetRecoveryAttempts();
}

void VeranoxStore::recordServiceStartFailure(const QString &message)
{
    setServiceState(ServiceState::error(message));
    appendLog(u"[GUI] start failed: "_s + message);
}

// A quit that comes in between has the last word on the state.
jobs::Async<> VeranoxStore::startServiceAndRefresh()
{
    co_await ensureServiceStarted();
    if (!m_isQuitting)
        co_await refresh();
}

void VeranoxStore::startRouter()
{
    m_jobs.start(performStartRouter());
}

jobs::Async<> VeranoxStore::performStartRouter()
{
    co_await startServiceAndRefresh();
    if (m_serviceState.isOnline())
        setLastActionMessage(u"Router is active and managed by Veranox service."_s);
}

// ---- Recovery

void VeranoxStore::handleGUIServiceExit(std::int32_t status)
{
    if (m_isQuitting || m_isRestartingRouter)
        return;
    appendLog(u"[GUI] service exited unexpectedly with status %1"_s.arg(status));
    setServiceState(ServiceState::error(u"GUI service stopped unexpectedly (status %1)."_s.arg(status)));

    const auto now = m_jobs.queue().clock().now();
    if (m_lastRecoveryAttemptAt && now - *m_lastRecoveryAttemptAt > recoveryWindow)
        m_recoveryAttempts = 0;
    if (m_recoveryAttempts >= recoveryAttemptLimit) {
        appendLog(u"[GUI] service crashed %1 times; stopping automatic recovery"_s.arg(m_recoveryAttempts));
        setServiceState(ServiceState::error(
            u"GUI service keeps crashing. Check the runtime log, then restart Veranox manually."_s));
        return;
    }
    m_lastRecoveryAttemptAt = now;
    m_jobs.start(recover(recoveryDelay(m_recoveryAttempts++)));
}

void VeranoxStore::forgetRecoveryAttempts()
{
    m_recoveryAttempts = 0;
    m_lastRecoveryAttemptAt.reset();
}

jobs::Async<> VeranoxStore::recover(jobs::Clock::Duration delay)
{
    if (m_isQuitting || m_isRestartingRouter)
        co_return;
    co_await jobs::sleep(delay);
    if (m_isQuitting || m_isRestartingRouter)
        co_return;
    co_await startServiceAndRefresh();
}

// ---- Restart

void VeranoxStore::restartRouterForPendingChanges()
{
    m_jobs.start(restartRouterForPendingChangesAsync());
}

jobs::Async<> VeranoxStore::restartRouterForPendingChangesAsync()
{
    if (m_isRestartingRouter)
        co_return;
    setRouterRestartPrompt(std::nullopt);
    setIsRestartingRouter(true);
    setLastActionMessage(u"Restarting router..."_s);
    cancelRefreshLoop();
    co_await requestShutdownForRestart();
    co_await m_runtimeClient->shutdown();
    if (!m_isQuitting) { // a quit must not find a service that is started behind its back
        setServiceState(ServiceState::starting());
        co_await startServiceAndRefresh();
        startRefreshLoop();
        concludeRestart();
    }
    setIsRestartingRouter(false);
}

// The service may be dead already: a failure stops nothing.
jobs::Async<> VeranoxStore::requestShutdownForRestart()
{
    const auto failure = co_await failureOf(m_apiClient->shutdown());
    if (failure) {
        if (!isCancellation(failure))
            appendLog(u"[GUI] restart shutdown failed: "_s + describeFailure(failure));
        co_return;
    }
    co_await jobs::sleep(restartSettleTime);
    appendLog(u"[GUI] restart requested"_s);
}

void VeranoxStore::concludeRestart()
{
    if (!m_serviceState.isOnline()) {
        setLastActionMessage(u"Router restart failed: "_s + routerStatusDetail());
        return;
    }
    setRouterNeedsRestart(false);
    setLastActionMessage(u"Router restarted. Changes are active."_s);
}
