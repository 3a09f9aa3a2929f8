#include "Service/Tunnels/SshSession.h"

#include "Service/Net/HostPort.h"
#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <cstdlib>

namespace veranox {

namespace asio = boost::asio;
namespace fs = std::filesystem;
using LocalEndpoint = asio::local::stream_protocol::endpoint;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

/// A folder of this user's alone; short, as the path of a socket must be.
fs::path makePrivateFolder()
{
    std::string pattern = (fs::temp_directory_path() / "veranox-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throwSystemError("make a folder for the sockets of ssh");
    return pattern;
}

HostPort bastionOf(const TunnelSettings &settings)
{
    constexpr std::uint16_t sshPort = 22;
    const std::string &bastion = settings.ssh->bastion;
    return bastion.contains(':') ? parseHostPort(bastion) : HostPort{bastion, sshPort};
}

} // namespace

SshSession::SshSession(asio::any_io_executor executor, NodeEngine &nodes, Conduits &conduits, TunnelSettings settings,
    std::string password)
    : m_executor(std::move(executor)),
      m_nodes(nodes),
      m_conduits(conduits),
      m_settings(std::move(settings)),
      m_password(std::move(password)),
      m_folder(makePrivateFolder()),
      m_sockets{m_folder / "dial", m_folder / "ask", m_folder / "forward"},
      m_bastionDoor(m_executor),
      m_passwordDoor(m_executor),
      m_output(m_executor),
      m_error(m_executor)
{
}

SshSession::~SshSession()
{
    removeFolder();
}

void SshSession::removeFolder() const
{
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void SshSession::start(const SshPlaces &places, Events events)
{
    SshCommand command = sshCommand(m_settings, places, m_sockets);
    m_bastionDoor = LocalAcceptor(m_executor, LocalEndpoint(m_sockets.dial.string()));
    m_passwordDoor = LocalAcceptor(m_executor, LocalEndpoint(m_sockets.askpass.string()));
    m_child = std::make_unique<ChildProcess>(std::move(command.arguments), std::move(command.environment));
    m_output.assign(m_child->takeOutput().release());
    m_error.assign(m_child->takeError().release());
    m_events = std::move(events);
    asio::co_spawn(m_executor, serveBastion(shared_from_this()), asio::detached);
    asio::co_spawn(m_executor, servePassword(shared_from_this()), asio::detached);
    asio::co_spawn(m_executor, readOutput(shared_from_this()), asio::detached);
    asio::co_spawn(m_executor, readError(shared_from_this()), asio::detached);
}

void SshSession::stop()
{
    m_isStopped = true;
    m_events = {};
    boost::system::error_code ignored;
    m_bastionDoor.close(ignored);
    m_passwordDoor.close(ignored);
    m_output.close(ignored);
    m_error.close(ignored);
    m_child.reset();
    if (m_relay)
        m_relay->cut();
    removeFolder();
}

/// ssh comes here once, for its way to the bastion.
asio::awaitable<void> SshSession::serveBastion(std::shared_ptr<SshSession> self)
{
    auto [failure, door] = co_await self->m_bastionDoor.async_accept(asTuple);
    boost::system::error_code ignored;
    self->m_bastionDoor.close(ignored);
    if (failure)
        co_return;
    std::string problem;
    StreamSocket bastion(self->m_executor);
    try {
        const HostPort address = bastionOf(self->m_settings);
        bastion = co_await self->m_nodes.dial(self->m_settings.profile, address.host, address.port);
    } catch (const std::exception &dialProblem) {
        problem = dialProblem.what();
    }
    if (!problem.empty() || self->m_isStopped) {
        self->m_dialProblem = problem;
        door.close(ignored);
        co_return;
    }
    self->m_relay = std::make_shared<Relay>(StreamSocket(std::move(door)), std::move(bastion), self->m_conduits);
    co_await Relay::run(self->m_relay);
}

/// A server may ask once by each of its two ways of asking; more would only be guessing.
asio::awaitable<void> SshSession::servePassword(std::shared_ptr<SshSession> self)
{
    constexpr int mostQuestions = 2;
    for (int question = 0; question < mostQuestions; ++question) {
        auto [failure, door] = co_await self->m_passwordDoor.async_accept(asTuple);
        if (failure)
            co_return;
        co_await asio::async_write(door, asio::buffer(self->m_password), asTuple);
    }
    boost::system::error_code ignored;
    self->m_passwordDoor.close(ignored);
}

asio::awaitable<void> SshSession::readOutput(std::shared_ptr<SshSession> self)
{
    std::array<char, 256> piece{};
    std::string line;
    for (;;) {
        const auto [failure, count] = co_await self->m_output.async_read_some(asio::buffer(piece), asTuple);
        if (failure)
            co_return;
        if (line.size() <= sshIsUp.size())
            line.append(piece.data(), count);
        if (line.starts_with(sshIsUp) && self->m_events.up)
            std::exchange(self->m_events.up, nullptr)();
    }
}

/// The end of its standard error is the end of ssh.
asio::awaitable<void> SshSession::readError(std::shared_ptr<SshSession> self)
{
    constexpr std::size_t kept = 8192;
    std::array<char, 1024> piece{};
    for (;;) {
        const auto [failure, count] = co_await self->m_error.async_read_some(asio::buffer(piece), asTuple);
        if (failure)
            break;
        self->m_errorOutput.append(piece.data(), count);
        if (self->m_errorOutput.size() > kept)
            self->m_errorOutput.erase(0, self->m_errorOutput.size() - kept);
    }
    if (self->m_isStopped)
        co_return;
    const auto ended = std::move(self->m_events.ended);
    self->stop();
    std::string complaint = self->complaint();
    ended(complaint.empty() ? "The ssh connection to the bastion ended." : std::move(complaint));
}

asio::awaitable<StreamSocket> SshSession::connect(std::shared_ptr<SshSession> self)
{
    asio::local::stream_protocol::socket socket(self->m_executor);
    const auto [failure] = co_await socket.async_connect(LocalEndpoint(self->m_sockets.forward.string()), asTuple);
    if (failure)
        throw NetworkProblem("The ssh connection to the bastion takes no connection: " + failure.message() + ".");
    co_return StreamSocket(std::move(socket));
}

} // namespace veranox
