#include "Core/VeranoxServiceStart.h"
#include "Base/Failures/Failure.h"
#include "Core/VeranoxRecoveryBudget.h"
#include "Log/VeranoxActivityLog.h"
#include "State/VeranoxState.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration readinessPollInterval = 400ms;

} // namespace

VeranoxServiceStart::VeranoxServiceStart(jobs::MainQueue &queue, Collaborators with)
    : m_with(std::move(with)),
      m_jobs(queue)
{
}

jobs::Async<> VeranoxServiceStart::ensure()
{
    if (m_with.state.isQuitting()) // nobody would stop what is started now
        co_return;
    if (!m_task.running())
        m_task = m_jobs.start(perform());
    co_await m_task;
}

jobs::Async<> VeranoxServiceStart::perform()
{
    m_with.log.append(u"[GUI] probing local service health at 127.0.0.1:43200"_s);
    const bool answers = co_await m_with.client.healthCheck();
    if (jobs::this_job::cancelled())
        co_return;
    if (answers) {
        recordContact();
        m_with.log.append(u"[GUI] local service health check succeeded; connected to existing service"_s);
        co_return;
    }
    m_with.log.append(u"[GUI] local service health check failed; starting bundled service"_s);
    if (!m_with.command) {
        recordFailure(u"Veranox's bundled service could not be found. Reinstall Veranox and try again."_s);
        co_return;
    }
    m_with.state.setServiceState(ServiceState::starting());
    co_await m_with.runtime.terminateStaleGUIService(*m_with.command);
    if (jobs::this_job::cancelled() || !launch())
        co_return;
    const bool isReady = co_await becomesReady();
    if (!jobs::this_job::cancelled())
        conclude(isReady);
}

// False when there is nothing to wait for.
bool VeranoxServiceStart::launch()
{
    try {
        m_with.runtime.startGUI(*m_with.command);
        return true;
    } catch (...) {
        const auto failure = std::current_exception();
        if (!isCancellation(failure))
            recordFailure(describeFailure(failure));
        return false;
    }
}

jobs::Async<bool> VeranoxServiceStart::becomesReady()
{
    const jobs::Clock &clock = jobs::this_job::clock();
    const auto deadline = clock.after(m_with.readinessTimeout);
    while (clock.now() < deadline && !jobs::this_job::cancelled()) {
        if (co_await m_with.client.healthCheck())
            co_return true;
        const auto process = m_with.runtime.guiProcess();
        if (!process || !process->isRunning) // no sense in waiting for a dead one
            co_return false;
        if (co_await jobs::sleep(readinessPollInterval) == jobs::Sleep::cut)
            co_return false;
    }
    co_return false;
}

// A service that still runs at the end of our patience is left running: it may answer a later refresh.
void VeranoxServiceStart::conclude(bool isReady)
{
    if (isReady) {
        recordContact();
        m_with.log.append(u"[GUI] service ready on 127.0.0.1:43200"_s);
        return;
    }
    const auto process = m_with.runtime.guiProcess();
    if (process && !process->isRunning)
        recordFailure(u"GUI service exited on launch (status %1). Check the runtime log for the cause."_s.arg(
            process->terminationStatus));
    else
        recordFailure(u"GUI service did not become reachable on 127.0.0.1:43200."_s);
}

void VeranoxServiceStart::recordContact()
{
    m_with.state.setServiceState(ServiceState::online());
    m_with.recovery.refill();
}

void VeranoxServiceStart::recordFailure(const QString &message)
{
    m_with.state.setServiceState(ServiceState::error(message));
    m_with.log.append(u"[GUI] start failed: "_s + message);
}
