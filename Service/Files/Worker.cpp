#include "Service/Files/Worker.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace veranox {

namespace asio = boost::asio;

Worker::Worker(std::size_t mostWaiting) : m_mostWaiting(mostWaiting), m_thread([this] { runJobs(); }) { }

Worker::~Worker()
{
    stop();
    m_thread.join();
}

bool Worker::hasRoom() const
{
    const std::scoped_lock lock(m_mutex);
    return m_waiting.size() < m_mostWaiting;
}

void Worker::stop()
{
    std::deque<Job> dropped;
    const std::scoped_lock lock(m_mutex);
    m_isStopped = true;
    dropped.swap(m_waiting);
    m_changed.notify_one();
}

/// The bell rings on the thread of whoever waits, so that cannot be between the look at the work and the wait.
asio::awaitable<void> Worker::finish(std::function<void()> work)
{
    const auto bell = std::make_shared<Bell>(co_await asio::this_coro::executor, Bell::time_point::max());
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_isStopped)
            m_waiting.push_back({std::move(work), bell});
        m_changed.notify_one();
    }
    co_await bell->async_wait(asio::as_tuple(asio::use_awaitable));
    const std::scoped_lock untilItLetGoOfTheContext(m_mutex);
}

void Worker::runJobs()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isStopped || !m_waiting.empty(); });
        if (m_isStopped)
            return;
        Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        job.work();
        job.work = nullptr;
        lock.lock();
        if (m_isStopped)
            return;
        // Under the lock, so that nobody takes the context away meanwhile.
        if (std::shared_ptr<Bell> bell = job.done.lock()) {
            const Bell::executor_type executor = bell->get_executor();
            asio::post(executor, [bell = std::move(bell)] { bell->cancel(); });
        }
    }
}

} // namespace veranox
