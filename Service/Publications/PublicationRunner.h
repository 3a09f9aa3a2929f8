#pragma once
#include "Service/Net/Backoff.h"
#include "Service/Net/Listener.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Time/TimeSource.h"
#include <boost/asio/ssl/context.hpp>

namespace veranox {

/// Keeps one publication up while its node runs: a port of the node that leads to a service of this computer.
class PublicationRunner {
public:
    using SteadyTime = std::chrono::steady_clock::time_point;

    /// `hostname` is that of the node. Surroundings, engine and time must outlive it.
    PublicationRunner(Listener::Surroundings forwarding, NodeEngine &nodes, const TimeSource &time,
        PublicationSettings settings, std::string hostname);
    PublicationRunner(const PublicationRunner &) = delete;
    PublicationRunner &operator=(const PublicationRunner &) = delete;
    ~PublicationRunner();

    /// Begins, or tries again when that is due. To be called while the node runs; harmless when repeated.
    void open(SteadyTime now, bool admitsNobody);
    /// Drops all connections and forgets what went wrong.
    void close();
    /// When open() is to be called for the next attempt; nothing while there is none to make.
    std::optional<SteadyTime> retryAt() const { return m_retryAt; }
    /// Puts what it knows into the status that the node gives while it lets the publication be.
    void describe(PublicationStatus &status) const;

private:
    void listen();
    void report(const Attempts &attempts);

    Listener::Surroundings m_forwarding;
    NodeEngine &m_nodes;
    const TimeSource &m_time;
    PublicationSettings m_settings;
    std::string m_hostname;
    std::shared_ptr<boost::asio::ssl::context> m_tls; // made with the first use
    std::shared_ptr<std::atomic<bool>> m_admitsNobody = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<Listener> m_listener; // while it listens
    std::shared_ptr<void> m_lease; // of the node's port
    std::string m_error;
    std::optional<WallTime> m_lastActive;
    Backoff m_backoff{std::chrono::seconds(15)};
    std::optional<SteadyTime> m_retryAt;
};

} // namespace veranox
