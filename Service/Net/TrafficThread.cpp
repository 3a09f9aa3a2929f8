#include "Service/Net/TrafficThread.h"

#include <boost/asio/post.hpp>
#include <csignal>
#include <pthread.h>

namespace veranox {

namespace {

/// Writing into a connection that is gone is an error like any other.
void blockBrokenPipeSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace

TrafficThread::TrafficThread(PipeAllowance &pipes) : m_conduits(bestConduits(pipes)), m_thread([this] { run(); }) { }

TrafficThread::~TrafficThread()
{
    m_work.reset();
    m_context.stop();
    if (m_thread.joinable())
        m_thread.join();
    m_context.dropRest();
}

/// What a stream does not catch itself, as the memory for doing so was short, is no reason to end the others.
void TrafficThread::run()
{
    blockBrokenPipeSignal();
    for (bool isDone = false; !isDone;) {
        try {
            m_context.run();
            isDone = true;
        } catch (const std::exception &) {
            isDone = m_context.stopped();
        }
    }
    m_end.set_value();
}

void TrafficThread::stopUnwanted()
{
    boost::asio::post(m_context, [this] {
        auto rest = std::make_shared<List>();
        rest->swap(m_list);
        stopSome(rest);
    });
}

/// Looks through what is left of the list; those who stay go back, and others may be added meanwhile.
void TrafficThread::stopSome(const std::shared_ptr<List> &rest)
{
    constexpr unsigned atOnce = 128;
    for (unsigned stopped = 0; !rest->empty() && stopped < atOnce;) {
        Stream &stream = rest->front();
        rest->pop_front();
        m_list.push_back(stream);
        if (m_isEnding || stream.isUnwanted()) {
            stream.stop();
            ++stopped;
        }
    }
    if (!rest->empty())
        boost::asio::post(m_context, [this, rest] { stopSome(rest); });
}

void TrafficThread::beginToEnd()
{
    m_isEnding = true;
    stopUnwanted();
    m_work.reset();
}

void TrafficThread::end(std::chrono::steady_clock::time_point deadline)
{
    if (!m_thread.joinable())
        return;
    if (m_end.get_future().wait_until(deadline) != std::future_status::ready)
        m_context.stop();
    m_thread.join();
    m_context.dropRest();
}

} // namespace veranox
