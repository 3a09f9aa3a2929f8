#pragma once
#include "Service/Nodes/Lab/LabConfig.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/Lab/LabGate.h"
#include "Service/Traffic/NodeTraffic.h"
#include "Tests/Service/Support/FakeTime.h"
#include "Tests/Service/Support/Peer.h"
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <future>
#include <thread>

namespace veranox::test {

/// The traffic of a lab network on a thread of its own, in a time that a test moves on.
class LabBench {
public:
    /// Runs it on the thread of the traffic.
    template <class Function> auto call(Function function)
    {
        std::packaged_task<decltype(function())()> task(std::move(function));
        auto result = task.get_future();
        boost::asio::post(m_context, std::move(task));
        return result.get();
    }

    explicit LabBench(const std::string &lab)
        : m_engine(parseLab(lab), m_time),
          m_traffic(m_context.get_executor(), m_engine, m_gate, m_time, {}),
          m_work(m_context.get_executor()),
          m_thread([this] { m_context.run(); })
    {
        addLabConfig(parseLab(lab), m_document);
        apply();
    }
    LabBench(const LabBench &) = delete;
    LabBench &operator=(const LabBench &) = delete;
    ~LabBench()
    {
        call([this] { m_traffic.stop(); });
        m_work.reset();
        m_thread.join();
    }

    ConfigDocument &document() { return m_document; }
    void apply()
    {
        call([this] { m_traffic.apply(std::make_shared<const ConfigDocument>(m_document)); });
    }
    void pass(std::chrono::milliseconds time)
    {
        call([&] {
            m_time.pass(time);
            m_traffic.nodesChanged();
        });
    }
    TunnelStatus tunnel(const std::string &name)
    {
        return call([&] { return m_traffic.tunnelStatus(name); });
    }
    PublicationStatus publication(const std::string &name)
    {
        return call([&] { return m_traffic.publicationStatus(name); });
    }
    NodeTraffic &traffic() { return m_traffic; }
    boost::asio::io_context &context() { return m_context; }

    /// True once the condition holds; false when it does not within 20 seconds.
    template <class Condition> bool becomes(Condition condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

private:
    boost::asio::io_context m_context{1};
    FakeTime m_time;
    LabEngine m_engine;
    LabGate m_gate{m_engine};
    NodeTraffic m_traffic;
    ConfigDocument m_document;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work;
    std::thread m_thread;
};

/// A port that is free now.
inline std::uint16_t freePort()
{
    return Peer::listening().port();
}

} // namespace veranox::test
