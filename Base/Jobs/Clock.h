// The only source of time and of timers: nothing else asks the system for the time or arms a timer.
#pragma once
#include <chrono>
#include <cstdint>
#include <optional>
#include <set>

namespace jobs {

// Monotonic time and its deadlines. Main thread only, but for now(). Outlives every alarm armed on it.
// The system's monotonic time stands still while the machine is suspended, and deadlines with it.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;
    using Time = std::chrono::time_point<Clock, Duration>; // its origin means nothing

    // One deadline. Lives where it is used (a coroutine frame, a member) and disarms itself when it dies.
    class Alarm {
    public:
        Alarm(const Alarm &) = delete;
        Alarm &operator=(const Alarm &) = delete;
        bool armed() const noexcept { return m_clock != nullptr; }

    protected:
        Alarm() = default;
        virtual ~Alarm();
        // Called once, at or after the deadline, already disarmed. Must not run jobs, only make them ready.
        virtual void ring() = 0;

    private:
        friend class Clock;
        Clock *m_clock = nullptr;
        Time m_at{};
        std::uint64_t m_order = 0;
    };

    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    virtual ~Clock();

    // Any thread.
    virtual Time now() const noexcept = 0;
    // now() + wait. A negative wait ends now, one beyond the range of Time at its end.
    Time after(Duration wait) const noexcept;
    // Sets the alarm, or sets it anew. Equal deadlines ring in the order in which they were armed.
    void arm(Alarm &alarm, Time at);
    // Does nothing when the alarm is not armed.
    void disarm(Alarm &alarm) noexcept;

protected:
    Clock() = default;
    std::optional<Time> nextDeadline() const;
    // Rings the earliest alarm that is due at `upTo`; false when none is.
    bool ringNext(Time upTo);
    // After every arm and disarm.
    virtual void deadlinesChanged() noexcept = 0;

private:
    struct Earlier {
        bool operator()(const Alarm *a, const Alarm *b) const noexcept
        {
            return a->m_at != b->m_at ? a->m_at < b->m_at : a->m_order < b->m_order;
        }
    };
    std::set<Alarm *, Earlier> m_alarms;
    std::uint64_t m_count = 0;
};

} // namespace jobs
