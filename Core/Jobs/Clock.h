// Time source of the application. Nothing else may ask the system for the time or arm a timer.
#pragma once
#include <QObject>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <set>

namespace jobs {

class Clock {
public:
    using Duration = std::chrono::nanoseconds;
    using Time = std::chrono::time_point<Clock, Duration>; // monotonic; its origin means nothing

    // One deadline. Lives where it is used (a coroutine frame, a member); disarms itself when it dies.
    class Alarm {
    public:
        Alarm(const Alarm &) = delete;
        Alarm &operator=(const Alarm &) = delete;
        bool armed() const noexcept { return m_clock != nullptr; }

    protected:
        Alarm() = default;
        virtual ~Alarm()
        {
            if (m_clock)
                m_clock->disarm(*this);
        }
        virtual void ring() = 0; // called once, on the clock's thread, already disarmed

    private:
        friend class Clock;
        Clock *m_clock = nullptr;
        Time m_at{};
        std::uint64_t m_order = 0; // equal deadlines ring in the order in which they were armed
    };

    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    virtual ~Clock();

    virtual Time now() const noexcept = 0; // any thread
    void arm(Alarm &alarm, Time at); // main thread only, as the rest
    void disarm(Alarm &alarm) noexcept;

protected:
    Clock() = default;
    std::optional<Time> nextDeadline() const;
    bool ringNext(Time upTo); // rings one alarm due at or before upTo
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

// Production: steady_clock, and one QTimer armed for the earliest deadline only (none armed = no wakeups).
class SystemClock final : public Clock {
public:
    SystemClock();
    Time now() const noexcept override;

private:
    void deadlinesChanged() noexcept override;
    void fire();
    QTimer m_timer;
    std::optional<Time> m_armedFor;
};

} // namespace jobs
