#include "Core/VeranoxRefreshLoop.h"
#include "Core/VeranoxDerivedState.h"
#include "Core/VeranoxRefresh.h"

using namespace std::chrono_literals;
using VeranoxDerivedState::profilesSettling;

namespace {

constexpr jobs::Clock::Duration settledInterval = 15s;
constexpr jobs::Clock::Duration settlingInterval = 2s;
constexpr int settlingPollLimit = 30; // then a profile that never settles costs no more than a settled one

} // namespace

VeranoxRefreshLoop::VeranoxRefreshLoop(jobs::MainQueue &queue, const VeranoxState &state, VeranoxRefresh &refresh)
    : m_state(state),
      m_refresh(refresh),
      m_jobs(queue)
{
}

void VeranoxRefreshLoop::start()
{
    if (!m_task)
        m_task = m_jobs.start(run());
}

void VeranoxRefreshLoop::cancel()
{
    std::exchange(m_task, {}).cancel();
}

// While profiles settle the store looks often, but only for a minute; then it waits for them at its usual pace.
jobs::Async<> VeranoxRefreshLoop::run()
{
    if (jobs::this_job::cancelled())
        co_return;
    int settlingPolls = profilesSettling(m_state) ? 1 : 0;
    jobs::Clock::Duration delay = profilesSettling(m_state) ? settlingInterval : settledInterval;
    for (;;) {
        co_await jobs::sleep(delay);
        co_await m_refresh.run();
        if (jobs::this_job::cancelled())
            co_return;
        const bool settling = profilesSettling(m_state);
        delay = settling && settlingPolls < settlingPollLimit ? settlingInterval : settledInterval;
        settlingPolls = settling ? settlingPolls + 1 : 0;
    }
}
