#pragma once
#include "Service/Files/ChildProcess.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Tunnels/SshCommand.h"
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

namespace veranox {

/// One run of ssh: the program, the sockets through which it reaches the bastion and asks for the password, and what it
/// says. Lives until its end or stop().
class SshSession : public std::enable_shared_from_this<SshSession> {
public:
    struct Events {
        std::function<void()> up;
        std::function<void(std::string complaint)> ended;
    };

    /// Makes the folder of its sockets. `password` may be empty. Engine, conduits and places must outlive it.
    SshSession(boost::asio::any_io_executor executor, NodeEngine &nodes, Conduits &conduits, TunnelSettings settings,
        std::string password);
    SshSession(const SshSession &) = delete;
    SshSession &operator=(const SshSession &) = delete;
    ~SshSession();

    /// Runs ssh. Throws std::exception with a sentence when that is not possible.
    void start(const SshPlaces &places, Events events);
    /// Ends ssh at once; no event comes any more. Harmless when repeated.
    void stop();

    /// Connects to the target behind the bastion.
    static boost::asio::awaitable<StreamSocket> connect(std::shared_ptr<SshSession> self);

    /// The last thing that ssh complained about.
    std::string complaint() const { return m_dialProblem.empty() ? sshComplaint(m_errorOutput) : m_dialProblem; }

private:
    using LocalAcceptor = boost::asio::local::stream_protocol::acceptor;

    static boost::asio::awaitable<void> serveBastion(std::shared_ptr<SshSession> self);
    static boost::asio::awaitable<void> servePassword(std::shared_ptr<SshSession> self);
    static boost::asio::awaitable<void> readOutput(std::shared_ptr<SshSession> self);
    static boost::asio::awaitable<void> readError(std::shared_ptr<SshSession> self);
    void removeFolder() const;

    boost::asio::any_io_executor m_executor;
    NodeEngine &m_nodes;
    Conduits &m_conduits;
    TunnelSettings m_settings;
    std::string m_password;
    std::filesystem::path m_folder;
    SshSockets m_sockets;
    LocalAcceptor m_bastionDoor;
    LocalAcceptor m_passwordDoor;
    boost::asio::posix::stream_descriptor m_output;
    boost::asio::posix::stream_descriptor m_error;
    std::unique_ptr<ChildProcess> m_child;
    std::shared_ptr<Relay> m_relay; // to the bastion
    std::string m_dialProblem; // why the bastion was not reached
    std::string m_errorOutput;
    Events m_events;
    bool m_isStopped = false;
};

} // namespace veranox
