#pragma once
#include "Service/Nodes/Lab/LabHosts.h"
#include "Service/Nodes/Lab/LabNetwork.h"
#include "Service/Nodes/NodeEngine.h"
#include <map>
#include <mutex>
#include <optional>
#include <tuple>

namespace veranox {

/// Finds and connects to whatever answers on a simulated tailnet: its hosts and the ports that nodes publish there. May
/// be used from any thread.
class LabDialer {
public:
    /// The network must outlive it.
    explicit LabDialer(const LabNetwork &network);

    /// Why nothing is known under that name in the tailnet of the profile; empty when something is.
    std::string hostProblem(const std::string &profile, const std::string &host) const;
    /// The addresses of a host; none for one that is not known.
    std::vector<std::string> resolve(const std::string &profile, const std::string &host) const;
    /// Fails with a NetworkProblem.
    boost::asio::awaitable<boost::asio::ip::tcp::socket> dial(
        std::string profile, std::string host, std::uint16_t port);
    /// Throws NetworkProblem.
    NodePort openPort(const boost::asio::any_io_executor &executor, const std::string &profile,
        const std::string &hostname, std::uint16_t port);
    void stop();

private:
    using Endpoint = boost::asio::ip::tcp::endpoint;
    using PortKey = std::tuple<std::string, std::string, std::uint16_t>; // tailnet, host name, port
    struct Published {
        Endpoint endpoint;
        std::string profile;
    };
    struct PublishedPorts {
        std::mutex mutex; // held for a look or a change alone
        std::map<PortKey, Published> ports; // at an endpoint of 0 while they are being opened
    };

    const LabTailnet *tailnetOf(const std::string &profile) const;
    bool isNode(const std::string &tailnet, const std::string &hostname) const;
    Endpoint endpointOf(const std::string &profile, const std::string &host, std::uint16_t port);
    std::shared_ptr<void> reserve(const PortKey &key, const std::string &profile);
    std::optional<Published> publishedAt(const PortKey &key) const;

    const LabNetwork &m_network;
    LabHosts m_hosts;
    std::shared_ptr<PublishedPorts> m_published = std::make_shared<PublishedPorts>();
};

} // namespace veranox
