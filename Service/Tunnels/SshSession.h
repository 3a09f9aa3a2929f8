#pragma once
#include "Service/Files/ChildProcess.h"
#include "Service/Net/Listener.h"
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

    /// Makes the folder of its sockets. `password` may be empty. Surroundings, engine and places must outlive it.
    SshSession(Listener::Surroundings forwarding, NodeEngine &nodes, TunnelSettings settings, std::string password);
    SshSession(const SshSession &) = delete;
    SshSession &operator=(const SshSession &) = delete;
    ~SshSession();

    /// Runs ssh. Throws std::exception with a sentence when that is not possible.
    void start(const SshPlaces &places, Events events);
    /// Ends ssh at once; no event comes any more. Harmless when repeated.
    void stop();

    /// How to connect to the target behind the bastion.
    decltype(Route::dial) dialTarget() const;

    /// The last thing that ssh complained about.
    std::string complaint() const { return m_dialProblem.empty() ? sshComplaint(m_errorOutput) : m_dialProblem; }

private:
    using LocalAcceptor = boost::asio::local::stream_protocol::acceptor;

    void openBastionDoor();
    static boost::asio::awaitable<void> servePassword(std::shared_ptr<SshSession> self);
    static boost::asio::awaitable<void> readOutput(std::shared_ptr<SshSession> self);
    static boost::asio::awaitable<void> readError(std::shared_ptr<SshSession> self);
    void removeFolder() const;

    Listener::Surroundings m_forwarding;
    boost::asio::any_io_executor m_executor; // of control
    NodeEngine &m_nodes;
    TunnelSettings m_settings;
    std::string m_password;
    std::filesystem::path m_folder;
    SshSockets m_sockets;
    LocalAcceptor m_passwordDoor;
    boost::asio::posix::stream_descriptor m_output;
    boost::asio::posix::stream_descriptor m_error;
    std::unique_ptr<ChildProcess> m_child;
    std::shared_ptr<Listener> m_bastionDoor; // through which ssh reaches the bastion
    std::string m_dialProblem; // why the bastion was not reached
    std::string m_errorOutput;
    Events m_events;
    bool m_isStopped = false;
};

} // namespace veranox
