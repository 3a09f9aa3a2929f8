#pragma once
#include "Base/Jobs/JobState.h"

namespace jobs {

// A job that belongs to a variable of the job that forked it: cancelled with it, destroyed with the variable.
// Awaiting it gives its result, moved out, or throws what it threw. Await it once.
template <class T> class [[nodiscard("a Child that is not kept is destroyed at once")]] Child {
public:
    Child(Child &&) noexcept = default;
    Child &operator=(Child &&) = delete;
    ~Child()
    {
        if (m_state)
            m_state->abandon();
    }
    bool running() const noexcept { return !m_state->over(); }
    void cancel() { m_state->cancel(); }
    detail::JobCore &core() const noexcept { return *m_state.get(); }
    detail::JoinAwaiter<T, detail::Take::move> operator co_await() &
    {
        return detail::JoinAwaiter<T, detail::Take::move>(m_state);
    }
    void operator co_await() && = delete; // a fork that is awaited at once is an Async awaited the long way round

private:
    template <class U> friend Child<U> fork(Async<U> body);
    explicit Child(detail::Ref<detail::JobState<T>> state) : m_state(std::move(state)) { }
    detail::Ref<detail::JobState<T>> m_state;
};

// Starts body beside the job that calls this. It begins when that job next waits, and inherits its ambient text and its
// cancellation. Only inside of a job.
template <class T> Child<T> fork(Async<T> body)
{
    auto *const parent = detail::JobCore::current();
    Q_ASSERT_X(parent, "fork", "called outside of a job");
    detail::Ref<detail::JobState<T>> state(new detail::JobState<T>(parent->queue(), body.release()));
    parent->adopt(*state.get());
    return Child<T>(std::move(state));
}

} // namespace jobs
