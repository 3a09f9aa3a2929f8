#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace veranox {

/// Serves the built-in hosts of a simulated tailnet on loopback: a small web site, over TLS at port 443, an echo and a
/// black hole. Each begins to listen when somebody first asks for it, on a thread that is theirs alone. May be used
/// from any thread.
class LabHosts {
public:
    LabHosts() = default;
    LabHosts(const LabHosts &) = delete;
    LabHosts &operator=(const LabHosts &) = delete;
    ~LabHosts();

    /// Where that port of a host of that built-in kind is. Throws boost::system::system_error when it cannot listen.
    boost::asio::ip::tcp::endpoint endpointOf(LabHost::Kind kind, std::uint16_t port);

    /// Ends all of them and their connections for good.
    void stop();

private:
    class Server;
    using Key = std::pair<LabHost::Kind, bool>; // the kind, and whether it speaks TLS
    using Servers = std::map<Key, std::shared_ptr<Server>>;

    boost::asio::io_context m_context{1};
    std::mutex m_mutex; // of the rest
    Servers m_servers;
    bool m_isStopped = false;
    std::thread m_thread; // while there are servers
};

} // namespace veranox
