#pragma once
#include "Base/Jobs/JobState.h"

namespace jobs {

// Shared handle of a started job; a default one is empty. Letting it go does not end the job: its JobScope keeps it.
// Awaiting it, from any number of jobs, gives each a copy of the result or throws what the job threw; JobAbandoned when
// its owner is gone. Who waits and is cancelled goes on waiting, and the awaited job is not cancelled by it.
template <class T = void> class Job {
public:
    Job() = default;
    explicit operator bool() const noexcept { return bool(m_state); }
    // Started and not yet at its end; also true before its first step and after a cancel that it has not yet followed.
    bool running() const noexcept { return m_state && !m_state->over(); }
    // Ran to its end, by returning or by throwing.
    bool finished() const noexcept { return m_state && m_state->finished(); }
    // Destroyed with its owner.
    bool abandoned() const noexcept { return m_state && m_state->abandoned(); }
    bool cancelRequested() const noexcept { return m_state && m_state->cancelled(); }
    // Asks the job and its children to end: this and every later sleep is cut, the stop token of a Completion is set.
    // The job sees it when it next runs. Does nothing for an empty handle, a second time, or after the end.
    void cancel() const
    {
        if (m_state)
            m_state->cancel();
    }
    detail::JoinAwaiter<T, detail::Take::copy> operator co_await() const
    {
        Q_ASSERT_X(m_state, "co_await", "empty Job");
        return detail::JoinAwaiter<T, detail::Take::copy>(m_state);
    }

private:
    friend class JobScope;
    explicit Job(detail::Ref<detail::JobState<T>> state) : m_state(std::move(state)) { }
    detail::Ref<detail::JobState<T>> m_state;
};

} // namespace jobs
