#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <map>
#include <memory>

namespace veranox {

/// Serves the built-in hosts of a simulated tailnet on loopback: a small web site, an echo and a black hole. Each
/// begins to listen when somebody first asks for it.
class LabHosts {
public:
    LabHosts() = default;
    LabHosts(const LabHosts &) = delete;
    LabHosts &operator=(const LabHosts &) = delete;
    ~LabHosts();

    /// Where a host of that built-in kind listens. Throws boost::system::system_error when it cannot.
    boost::asio::ip::tcp::endpoint endpointOf(LabHost::Kind kind, const boost::asio::any_io_executor &executor);

    /// Ends all of them and their connections.
    void stop();

private:
    class Server;
    std::map<LabHost::Kind, std::shared_ptr<Server>> m_servers;
};

} // namespace veranox
