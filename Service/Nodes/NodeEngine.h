#pragma once
#include "Service/Net/NetworkProblem.h"
#include "Service/Nodes/NodeStatus.h"
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace veranox {

/// What came of signing a node in or out.
struct NodeAction {
    bool ok = false;
    std::string output; // for people to read
    std::string error; // why it is not ok; empty when it is, and when the address has to be visited first
    std::string authURL; // https: where a person approves the sign-in; empty when there is nothing to approve

    bool operator==(const NodeAction &) const = default;
};

/// A port of a node, open to the other devices of its tailnet for as long as this is kept.
struct NodePort {
    boost::asio::ip::tcp::acceptor acceptor;
    std::shared_ptr<void> lease;
};

/// What a node is called in its tailnet.
struct NodeNames {
    std::string hostName;
    std::string dnsName; // empty while it is not known
    std::vector<std::string> addresses;
};

/// Where nodes come from: runs one node per profile and knows how each fares. May be called from any thread. What is no
/// awaitable answers at once from what is known and never fails; a name that it does not know is a status that says so.
/// What is awaitable may take its time, runs on the caller's executor, and needs the engine until it is done.
class NodeEngine {
public:
    virtual ~NodeEngine() = default;

    /// Whom to tell when a node may have changed for another reason than those that nextChange() foresees. Called on
    /// any thread, and possibly once more while it is being replaced; it must not call the engine.
    virtual void setChanged(std::function<void()> changed) = 0;

    virtual NodeStatus profileStatus(const std::string &profile) const = 0;
    /// Begins to sign the node in. While a sign-in waits for its approval, the same address is given again.
    virtual boost::asio::awaitable<NodeAction> login(std::string profile) = 0;
    /// Signs the node out, so that it needs a login.
    virtual boost::asio::awaitable<NodeAction> logout(std::string profile) = 0;

    /// The moment at which a status changes by the mere passing of time; nothing when none will.
    virtual std::optional<std::chrono::steady_clock::time_point> nextChange() const = 0;

    /// Why the node of the profile cannot reach the host, as a sentence; empty when it knows the way.
    virtual std::string hostProblem(const std::string &profile, const std::string &host) const = 0;

    /// The addresses of a host as the node of the profile sees them; none for one that it does not know.
    virtual boost::asio::awaitable<std::vector<std::string>> resolve(std::string profile, std::string host) = 0;

    /// The names of the profile's node, whose host name is given.
    virtual NodeNames nodeNames(const std::string &profile, const std::string &hostname) const = 0;

    /// Connects through the node of the profile, on the caller's executor. Fails with a NetworkProblem.
    virtual boost::asio::awaitable<boost::asio::ip::tcp::socket> dial(
        std::string profile, std::string host, std::uint16_t port) = 0;

    /// Opens a port on the node of the profile, whose host name is given. Throws NetworkProblem.
    virtual NodePort openPort(const boost::asio::any_io_executor &executor, const std::string &profile,
        const std::string &hostname, std::uint16_t port) = 0;

    /// What a node shows who connects to it over TLS under that name. Throws NetworkProblem when there is none.
    virtual std::shared_ptr<boost::asio::ssl::context> certificate(const std::string &dnsName) = 0;

    /// Ends whatever it still runs, so that the io_context runs out of work.
    virtual void stop() = 0;
};

} // namespace veranox
