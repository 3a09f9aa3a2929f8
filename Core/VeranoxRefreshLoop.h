#pragma once
#include "Base/Jobs/Jobs.h"

class VeranoxRefresh;
class VeranoxState;

// The schedule of refreshes: every 15 seconds, and every 2 seconds while profiles settle, 30 times at most for each
// settling. Main thread only; the state and the refresh outlive it.
class VeranoxRefreshLoop {
public:
    VeranoxRefreshLoop(jobs::MainQueue &queue, const VeranoxState &state, VeranoxRefresh &refresh);

    // If it does not run. The first refresh comes one delay after the call.
    void start();

    // With the refresh that it waits for.
    void cancel();

private:
    jobs::Async<> run();

    const VeranoxState &m_state;
    VeranoxRefresh &m_refresh;
    jobs::Job<> m_task;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
