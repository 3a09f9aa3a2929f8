#pragma once
#include "Core/Jobs/Jobs.h"
namespace jobs {
class VirtualClock final : public Clock {
public:
    Time now() const noexcept override { return Time(Duration(m_now.load())); }
    // Runs everything that is due until `span` has passed, in order, without waiting.
    void advance(MainQueue &queue, Duration span)
    {
        const Time until = now() + span;
        for (;;) {
            queue.settle();
            const auto next = nextDeadline();
            if (!next || *next > until)
                break;
            m_now = next->time_since_epoch().count();
            ringNext(*next);
            ++rings;
        }
        m_now = until.time_since_epoch().count();
    }
    int rings = 0;

private:
    void deadlinesChanged() noexcept override { }
    std::atomic<std::int64_t> m_now = 0;
};
struct World { // what a test needs: virtual time and a queue
    VirtualClock clock;
    MainQueue queue{clock};
    void run(Clock::Duration d = {}) { clock.advance(queue, d); }
    double seconds() const { return std::chrono::duration<double>(clock.now().time_since_epoch()).count(); }
};
} // namespace jobs
