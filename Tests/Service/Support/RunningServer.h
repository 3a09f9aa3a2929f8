#pragma once
#include "Service/Control/ControlServer.h"
#include "Service/Net/LoopbackListener.h"
#include "Service/Nodes/NoNodeEngine.h"
#include "Tests/Service/Support/FakeTraffic.h"
#include "Tests/Service/Support/Lines.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <boost/asio/post.hpp>
#include <string>
#include <thread>
#include <vector>

namespace veranox::test {

/// A server on a thread of its own, with whatever limits a test needs.
class RunningServer {
public:
    explicit RunningServer(ControlLimits limits, LogLevel level = LogLevel::debug)
        : m_log(m_lines, level, ""),
          m_acceptor(listenOnLoopback(m_context, {"127.0.0.1", 0})),
          m_port(m_acceptor.local_endpoint().port()),
          m_api({m_store, m_engine, m_traffic, m_time, [](const std::string &) { return std::nullopt; }, m_port,
                    m_folder.path(), m_saves, m_lookUps, m_log},
              RequestGuard(token(), m_port)),
          m_server(m_context, std::move(m_acceptor), m_api, m_store, m_log, limits, [this] { m_server.stop(); }),
          m_thread([this] {
              m_server.start();
              m_context.run();
          })
    {
    }
    RunningServer(const RunningServer &) = delete;
    RunningServer &operator=(const RunningServer &) = delete;
    ~RunningServer() { end(); }

    std::uint16_t port() const { return m_port; }
    std::string tokenLine() const
    {
        return "X-Veranox-Token: " + m_folder.read("control.token").substr(0, 64) + "\r\n";
    }

    /// Lets every path report from now on wait for this first.
    void holdReports(std::function<boost::asio::awaitable<void>()> until)
    {
        boost::asio::post(m_context, [this, until = std::move(until)] { m_traffic.beforeReport = until; });
    }

    /// Stops in order; returns once nothing runs any more.
    void end()
    {
        boost::asio::post(m_context, [this] { m_server.stop(); });
        awaitEnd();
    }
    void awaitEnd()
    {
        if (m_thread.joinable())
            m_thread.join();
    }
    const std::vector<std::string> &lines() const { return m_lines.lines; }

private:
    ControlToken token() const
    {
        ControlToken token = ControlToken::random();
        token.writeTo(m_folder.path());
        return token;
    }

    test::TemporaryFolder m_folder;
    Lines m_lines;
    Log m_log;
    ConfigStore m_store{m_folder.path()};
    NoNodeEngine m_engine{WallTime{}};
    test::FakeTraffic m_traffic;
    SystemTime m_time;
    boost::asio::io_context m_context{1};
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::uint16_t m_port;
    Worker m_saves{8};
    Worker m_lookUps{8};
    ControlApi m_api;
    ControlServer m_server;
    std::thread m_thread;
};

} // namespace veranox::test
