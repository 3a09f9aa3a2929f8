#pragma once
#include "Base/Jobs/Clock.h"
#include <optional>

// How often a service that crashes is brought back by itself: a service that crashed once may just be unlucky, one that
// crashes again needs a cause to go away first. Main thread only; the clock outlives it.
class VeranoxRecoveryBudget {
public:
    explicit VeranoxRecoveryBudget(const jobs::Clock &clock) : m_clock(clock) { }

    // Takes an attempt and gives how long it is to wait: 1, 2 and 4 seconds; then nothing is left. An attempt more than
    // a minute after the last one is a first one again.
    std::optional<jobs::Clock::Duration> take();

    // The service was heard of.
    void refill();

    int taken() const { return m_taken; }

private:
    const jobs::Clock &m_clock;
    int m_taken = 0;
    std::optional<jobs::Clock::Time> m_lastTakenAt;
};
