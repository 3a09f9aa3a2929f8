// Time for tests: it stands still until the test moves it, and then jumps from deadline to deadline.
//
//   World world;
//   VeranoxStore store(world.queue, ...);
//   store.startPolling();
//   world.run(65s);                    // a millisecond of real time
//   EXPECT_EQ(world.seconds(), 65);
#pragma once
#include "Base/Jobs/Jobs.h"
#include <algorithm>
#include <atomic>
#include <cstdint>

namespace jobs {

// A clock that is moved by hand. Starts at 0. Main thread only, but for now().
class VirtualClock final : public Clock {
public:
    Time now() const noexcept override { return Time(Duration(m_now.load())); }

    // Runs the queue until nothing can go on, then jumps to the next deadline and rings it, and so on until `span` has
    // passed. Alarms with equal deadlines ring one at a time, in the order in which they were armed, and what the first
    // one wakes runs before the second rings. While a thread has been asked for an answer, time stands still.
    void advance(MainQueue &queue, Duration span)
    {
        const Time until = after(span);
        for (;;) {
            queue.settle();
            const auto next = nextDeadline();
            if (!next || *next > until)
                break;
            m_now = std::max(now(), *next).time_since_epoch().count();
            ringNext(*next);
            ++rings;
        }
        m_now = until.time_since_epoch().count();
    }

    int rings = 0; // how many alarms have rung: the wake-ups that a real clock would have cost

private:
    void deadlinesChanged() noexcept override { }
    std::atomic<std::int64_t> m_now = 0;
};

// What a test of jobs needs: virtual time and a queue. Declare it before whatever owns jobs.
struct World {
    VirtualClock clock;
    MainQueue queue{clock};

    // Lets `span` pass and runs all that falls into it; without an argument, all that can run now.
    void run(Clock::Duration span = {}) { clock.advance(queue, span); }
    // Seconds since the world began.
    double seconds() const { return std::chrono::duration<double>(clock.now().time_since_epoch()).count(); }
};

} // namespace jobs
