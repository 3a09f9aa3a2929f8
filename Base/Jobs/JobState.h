#pragma once
#include "Base/Jobs/Async.h"
#include <QtGlobal>
#include <vector>

namespace jobs::detail {

// A job with its root frame and, once it is finished, its result.
template <class T> class JobState final : public JobCore {
public:
    using Handle = std::coroutine_handle<Promise<T>>;
    JobState(MainQueue &queue, Handle frame) : JobCore(queue), m_frame(frame)
    {
        Q_ASSERT_X(m_frame, "start", "this Async was started or moved away");
        m_frame.promise().core = this;
    }
    ~JobState() override { destroy(); }

    const Stored<T> &value() const { return *m_value; }
    Stored<T> takeValue() { return std::move(*m_value); }

private:
    std::coroutine_handle<> root() const noexcept override { return m_frame; }
    std::exception_ptr takeResult() override
    {
        auto &promise = m_frame.promise();
        if (!promise.error)
            m_value.emplace(promise.take());
        return std::move(promise.error);
    }
    void destroyFrame() noexcept override { destroy(); }
    void destroy() noexcept
    {
        if (const Handle frame = std::exchange(m_frame, nullptr))
            frame.destroy();
    }
    Handle m_frame;
    std::optional<Stored<T>> m_value;
};

enum class Take { copy, move };

// Waits for the end of another job.
template <class T, Take How> class JoinAwaiter final : public Suspension {
public:
    explicit JoinAwaiter(Ref<JobState<T>> target) : m_target(std::move(target)) { }
    ~JoinAwaiter() override { std::erase(m_target->waiters, this); }
    bool await_ready() const noexcept { return m_target->over(); }
    template <JobPromise P> void await_suspend(std::coroutine_handle<P> frame)
    {
        Q_ASSERT_X(frame.promise().core != m_target.get(), "co_await", "a job waits for itself");
        m_target->waiters.push_back(this);
        suspend(*frame.promise().core, frame);
    }
    T await_resume()
    {
        if (m_target->abandoned())
            throw JobAbandoned();
        if (m_target->failed())
            m_target->rethrow();
        if constexpr (std::is_void_v<T>)
            return;
        else if constexpr (How == Take::move)
            return m_target->takeValue();
        else
            return m_target->value();
    }

private:
    Ref<JobState<T>> m_target;
};

} // namespace jobs::detail
