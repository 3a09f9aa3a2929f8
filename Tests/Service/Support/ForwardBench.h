#pragma once
#include "Service/Net/Listener.h"
#include "Service/Net/NetworkProblem.h"
#include "Tests/Service/Support/Peer.h"
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <future>
#include <thread>

namespace veranox::test {

/// True once the condition holds; false when it does not within 20 seconds.
template <class Condition> bool becomesTrue(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

/// Connects to a port of this computer.
inline boost::asio::awaitable<StreamSocket> dialPort(std::uint16_t port)
{
    boost::asio::ip::tcp::socket socket(co_await boost::asio::this_coro::executor);
    co_await socket.async_connect({boost::asio::ip::address_v4::loopback(), port}, boost::asio::use_awaitable);
    co_return StreamSocket(std::move(socket));
}

inline boost::asio::awaitable<StreamSocket> failToDial(std::string problem)
{
    throw NetworkProblem(problem);
    co_return StreamSocket(co_await boost::asio::this_coro::executor);
}

/// Never answers; ends when it is cancelled.
inline boost::asio::awaitable<StreamSocket> dialWithoutAnswer()
{
    const auto executor = co_await boost::asio::this_coro::executor;
    boost::asio::steady_timer never(executor, boost::asio::steady_timer::time_point::max());
    co_await never.async_wait(boost::asio::use_awaitable);
    co_return StreamSocket(executor);
}

inline Route to(std::uint16_t port, ConnectionLimits limits = {})
{
    return {.dial = [port] { return dialPort(port); }, .limits = limits};
}

/// The threads of the traffic, and one of control, for listeners that a test makes.
class ForwardBench {
public:
    static constexpr std::size_t plenty = 4096;

    explicit ForwardBench(Budget::Limits limits = {.descriptors = plenty}, unsigned threads = 2)
        : m_budget(limits, [] {}),
          m_pool(threads, m_budget),
          m_work(m_control.get_executor()),
          m_thread([this] { m_control.run(); })
    {
    }
    ForwardBench(const ForwardBench &) = delete;
    ForwardBench &operator=(const ForwardBench &) = delete;
    ~ForwardBench()
    {
        m_pool.stop();
        m_work.reset();
        m_thread.join();
    }

    Budget &budget() { return m_budget; }
    TrafficPool &pool() { return m_pool; }

    /// Runs it on the thread of control.
    template <class Function> auto call(Function function)
    {
        std::packaged_task<decltype(function())()> task(std::move(function));
        auto result = task.get_future();
        boost::asio::post(m_control, std::move(task));
        return result.get();
    }

    /// A listener on a port that the system picks.
    class Door {
    public:
        Door(ForwardBench &bench, Route route, Ledger::Report report = [](const Attempts &) { }) : m_bench(bench)
        {
            using boost::asio::ip::tcp;
            tcp::acceptor acceptor(
                bench.m_pool.leastLoaded().executor(), tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0));
            m_port = acceptor.local_endpoint().port();
            m_listener = std::make_shared<Listener>(
                Listener::Surroundings{bench.m_pool, bench.m_budget, bench.m_control.get_executor()},
                StreamAcceptor(std::move(acceptor)), std::move(route), std::move(report));
            bench.call([this] { m_listener->start(); });
        }
        Door(const Door &) = delete;
        Door &operator=(const Door &) = delete;
        ~Door() { stop(); }

        std::uint16_t port() const { return m_port; }
        Peer connect() const { return Peer::connectTo(m_port); }
        Tally tally() const { return m_listener->tally(); }
        void stop()
        {
            m_bench.call([this] { m_listener->stop(); });
        }
        /// True once nothing is active and so many were closed for that reason.
        bool closes(CloseReason reason, std::uint64_t count = 1) const
        {
            return becomesTrue([&] { return tally().active == 0 && tally().closedFor(reason) == count; });
        }

    private:
        ForwardBench &m_bench;
        std::shared_ptr<Listener> m_listener;
        std::uint16_t m_port = 0;
    };

private:
    Budget m_budget;
    boost::asio::io_context m_control{1};
    TrafficPool m_pool;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work;
    std::thread m_thread;
};

} // namespace veranox::test
