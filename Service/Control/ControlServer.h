#pragma once
#include "Service/Control/ControlApi.h"
#include "Service/Control/ControlLimits.h"
#include "Service/Log/Log.h"
#include "Service/Log/LogBrake.h"
#include <boost/asio/awaitable.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstdint>
#include <functional>
#include <set>
#include <string>

namespace veranox {

class ControlSession;

/// Serves the control API over HTTP/1.1 on one listening socket. Runs on the thread of its io_context, which must be
/// run until it has no more work before the server goes; what it is given must outlive it.
class ControlServer {
public:
    /// `acceptor` already listens. `onShutdown` is called when a client has asked for the end and has its answer.
    ControlServer(boost::asio::io_context &context, boost::asio::ip::tcp::acceptor acceptor, ControlApi &api,
        const ConfigStore &config, Log &log, ControlLimits limits, std::function<void()> onShutdown);
    ControlServer(const ControlServer &) = delete;
    ControlServer &operator=(const ControlServer &) = delete;
    ~ControlServer();

    void start();
    /// Takes no more connections, closes those that wait, and gives running answers a short time. Harmless when
    /// repeated.
    void stop();

    // For its sessions.
    ControlApi &api() const { return m_api; }
    const ControlLimits &limits() const { return m_limits; }
    bool isStopping() const { return m_isStopping; }
    void sessionEnded(ControlSession &session);
    void requestShutdown();
    /// One answered request, for the log: reads that went well only where the level asks for them, and of refusals no
    /// more than a person can read.
    void logAnswer(const ControlRequest &request, unsigned status, std::chrono::steady_clock::duration took);

private:
    boost::asio::awaitable<void> acceptConnections();
    bool begin(boost::asio::ip::tcp::socket socket);
    bool makeRoom();
    boost::asio::awaitable<void> closeLaggards();

    boost::asio::io_context &m_context;
    boost::asio::ip::tcp::acceptor m_acceptor;
    boost::asio::steady_timer m_timer;
    ControlApi &m_api;
    const ConfigStore &m_config;
    Log &m_log;
    ControlLimits m_limits;
    std::function<void()> m_onShutdown;
    std::set<ControlSession *> m_sessions;
    std::string m_requestPrefix;
    std::uint64_t m_requests = 0;
    LogBrake m_refusals{20, std::chrono::seconds(10)};
    bool m_isStopping = false;
};

} // namespace veranox
