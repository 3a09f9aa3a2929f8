#pragma once
#include "Base/Jobs/Job.h"
#include <cstddef>
#include <vector>

namespace jobs {

// The weak tie between jobs and their owner. Make it the last member, so that it dies first: its destructor destroys
// the frames of all its jobs where they wait, and none of them ever runs again. Main thread only.
class JobScope {
public:
    explicit JobScope(MainQueue &queue) : m_queue(queue) { }
    ~JobScope();
    JobScope(const JobScope &) = delete;
    JobScope &operator=(const JobScope &) = delete;

    // Queues body as a job of its own, which inherits the ambient text. It does not run before the caller gives up the
    // thread. An error that nobody collects from the handle is logged as critical.
    template <class T> Job<T> start(Async<T> body)
    {
        detail::Ref<detail::JobState<T>> state(new detail::JobState<T>(m_queue, body.release()));
        add(*state.get());
        return Job<T>(std::move(state));
    }
    void cancelAll();
    std::size_t running() const noexcept { return m_jobs.size(); }
    MainQueue &queue() const noexcept { return m_queue; }

private:
    friend class detail::JobCore;
    void add(detail::JobCore &core);
    void remove(detail::JobCore &core) noexcept;
    MainQueue &m_queue;
    std::vector<detail::JobCore *> m_jobs;
    bool m_closed = false;
};

} // namespace jobs
