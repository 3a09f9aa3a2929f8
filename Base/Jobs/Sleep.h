#pragma once
#include "Base/Jobs/Promise.h"

namespace jobs {

// How a sleep ended. Cut: the job was cancelled; it may look at what it has and go on.
enum class Sleep { full, cut };

namespace detail {

class SleepAwaiter final : public Suspension, private Clock::Alarm {
public:
    explicit SleepAwaiter(Clock::Duration duration) : m_duration(duration) { }
    bool await_ready() const noexcept { return false; }
    template <JobPromise P> void await_suspend(std::coroutine_handle<P> frame)
    {
        JobCore &core = *frame.promise().core;
        Clock &clock = core.queue().clock();
        if (!core.cancelled())
            clock.arm(*this, clock.after(m_duration));
        suspend(core, frame);
    }
    Sleep await_resume() const noexcept { return m_cut ? Sleep::cut : Sleep::full; }

private:
    void ring() override { wake(); }
    void jobCancelled() override
    {
        m_cut = true;
        wake();
    }
    Clock::Duration m_duration;
    bool m_cut = false;
};

class YieldAwaiter final : public Suspension {
public:
    bool await_ready() const noexcept { return false; }
    template <JobPromise P> void await_suspend(std::coroutine_handle<P> frame)
    {
        suspend(*frame.promise().core, frame);
        wake();
    }
    void await_resume() const noexcept { }
};

} // namespace detail

// co_await sleep(15s): gives up the thread for that long, or until the job is cancelled. Never throws. In a job that is
// already cancelled it ends at once, so clean-up that needs time belongs into a job of its own.
inline detail::SleepAwaiter sleep(Clock::Duration duration)
{
    return detail::SleepAwaiter(duration);
}

// co_await yield(): lets every job run that is ready now.
inline detail::YieldAwaiter yield()
{
    return {};
}

} // namespace jobs
