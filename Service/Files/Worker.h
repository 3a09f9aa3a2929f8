#pragma once
#include <boost/asio/awaitable.hpp>
#include <boost/asio/steady_timer.hpp>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>

namespace veranox {

/// A thread of its own for work that may have to wait for a disk, one piece after the other, in the order in which it
/// was given. Everything but the work itself is for one thread, whose context must not be gone before stop().
class Worker {
public:
    /// `mostWaiting`: how much work may wait for its turn; see hasRoom().
    explicit Worker(std::size_t mostWaiting);
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;
    /// Waits for the piece that is under way, however long it takes.
    ~Worker();

    /// False while as much work waits as may.
    bool hasRoom() const;

    /// Runs the work there and gives what it returned, or throws what it threw. It must hold all that it needs: whoever
    /// waits here may be gone before it is done. After stop() the result never comes.
    template <class Work> boost::asio::awaitable<std::invoke_result_t<Work &>> run(Work work)
    {
        auto task = std::make_shared<std::packaged_task<std::invoke_result_t<Work &>()>>(std::move(work));
        std::future<std::invoke_result_t<Work &>> result = task->get_future();
        co_await finish([task = std::move(task)] { (*task)(); });
        co_return result.get();
    }

    /// Nobody waits for results any more, and what has not begun never does. Harmless when repeated.
    void stop();

private:
    /// Rings on the thread that waits.
    using Bell = boost::asio::steady_timer;
    struct Job {
        std::function<void()> work;
        std::weak_ptr<Bell> done;
    };

    boost::asio::awaitable<void> finish(std::function<void()> work);
    void runJobs();

    std::size_t m_mostWaiting;
    mutable std::mutex m_mutex; // of all below
    std::condition_variable m_changed;
    std::deque<Job> m_waiting;
    bool m_isStopped = false;
    std::thread m_thread;
};

} // namespace veranox
