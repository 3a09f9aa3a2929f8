#include "Core/VeranoxStartupSettlement.h"
#include "Core/VeranoxDerivedState.h"
#include "Core/VeranoxStartupState.h"
#include "Log/VeranoxActivityLog.h"
#include "State/VeranoxState.h"

using namespace Qt::StringLiterals;

namespace {

qint64 wholeMilliseconds(jobs::Clock::Duration span)
{
    return std::max<qint64>(0, std::chrono::duration_cast<std::chrono::milliseconds>(span).count());
}

} // namespace

VeranoxStartupSettlement::VeranoxStartupSettlement(
    jobs::MainQueue &queue, VeranoxState &state, VeranoxActivityLog &log, jobs::Clock::Duration timeout)
    : m_state(state),
      m_log(log),
      m_timeout(timeout),
      m_jobs(queue)
{
}

void VeranoxStartupSettlement::beginIfNeeded(const QString &correlationID)
{
    cancel();
    if (!VeranoxDerivedState::profilesSettling(m_state))
        return;
    m_observation = {correlationID, m_jobs.queue().clock().now()};
    m_timeoutTask = m_jobs.start(limit());
}

jobs::Async<> VeranoxStartupSettlement::limit()
{
    const jobs::Sleep ended = co_await jobs::sleep(m_timeout);
    if (ended == jobs::Sleep::full && !jobs::this_job::cancelled())
        finish(u"timeout"_s);
}

void VeranoxStartupSettlement::finishIfSettled()
{
    if (!VeranoxDerivedState::profilesSettling(m_state))
        finish(u"settled"_s);
}

void VeranoxStartupSettlement::cancel()
{
    std::exchange(m_timeoutTask, {}).cancel();
    m_observation.reset();
}

void VeranoxStartupSettlement::finish(const QString &outcome)
{
    const auto observation = m_observation;
    if (!observation)
        return;
    cancel();
    const qint64 duration = wholeMilliseconds(m_jobs.queue().clock().now() - observation->startedAt);
    const bool isWarning = outcome != "settled"_L1 || !m_state.serviceState().isOnline()
        || VeranoxDerivedState::menuBarNeedsAttention(m_state);
    m_log.append(u"[APP] startup profile settlement: outcome=%1 duration_ms=%2 %3"_s.arg(outcome).arg(duration).arg(
                     startupStateFields(m_state)),
        startupEvent(u"app_startup_profile_settlement"_s, isWarning, observation->correlationID));
}
