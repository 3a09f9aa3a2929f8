#pragma once
#include "Service/Net/Relay.h"
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

namespace veranox {

/// Why a connection was not made or a port not opened, as one sentence for a person.
class NetworkProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Takes connections at one listener and joins each to one that it dials. Lives until stop(), which drops everything.
class PortForwarder : public std::enable_shared_from_this<PortForwarder> {
public:
    /// Makes what a connection is to be joined to. Fails with a NetworkProblem.
    using Dial = std::function<boost::asio::awaitable<StreamSocket>()>;
    /// What is done to a connection that was taken before it is joined. One that comes back closed was turned away.
    using Admit = std::function<boost::asio::awaitable<StreamSocket>(StreamSocket)>;
    /// Told of each attempt: an empty text when it succeeded, otherwise why not.
    using Report = std::function<void(const std::string &problem)>;

    /// One more connection waits until one ends.
    static constexpr std::size_t connectionLimit = 1024;

    /// The acceptor listens already. The conduits must outlive the connections.
    PortForwarder(boost::asio::ip::tcp::acceptor acceptor, Conduits &conduits, Dial dial, Report report);
    PortForwarder(const PortForwarder &) = delete;
    PortForwarder &operator=(const PortForwarder &) = delete;
    ~PortForwarder() = default;

    /// Before start().
    void setAdmit(Admit admit) { m_admit = std::move(admit); }
    void start();
    /// Nothing is reported any more, and every connection gets a reset. Harmless when repeated.
    void stop();
    std::int64_t activeConns() const { return static_cast<std::int64_t>(m_active); }

private:
    static boost::asio::awaitable<void> acceptConnections(std::shared_ptr<PortForwarder> self);
    static boost::asio::awaitable<void> serve(std::shared_ptr<PortForwarder> self, StreamSocket client);
    boost::asio::awaitable<void> join(StreamSocket client);
    boost::asio::awaitable<void> awaitRoom();

    boost::asio::ip::tcp::acceptor m_acceptor;
    Conduits &m_conduits;
    Dial m_dial;
    Admit m_admit;
    Report m_report;
    boost::asio::steady_timer m_wake; // wakes the acceptor: a connection ended, or a pause is over
    std::set<std::shared_ptr<Relay>> m_relays;
    std::size_t m_active = 0;
    bool m_isStopped = false;
};

} // namespace veranox
