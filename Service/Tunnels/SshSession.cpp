#include "Service/Tunnels/SshSession.h"

#include "Service/Net/HostPort.h"
#include "Service/Net/NetworkProblem.h"
#include "Service/Nodes/NodeDial.h"
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

asio::awaitable<StreamSocket> connectTo(std::string path)
{
    asio::local::stream_protocol::socket socket(co_await asio::this_coro::executor);
    const auto [failure] = co_await socket.async_connect(LocalEndpoint(path), asTuple);
    if (failure)
        throw NetworkProblem("The ssh connection to the bastion takes no connection: " + failure.message() + ".");
    co_return StreamSocket(std::move(socket));
}

} // namespace

SshSession::SshSession(
    Listener::Surroundings forwarding, NodeEngine &nodes, TunnelSettings settings, std::string password)
    : m_forwarding(std::move(forwarding)),
      m_executor(m_forwarding.control),
      m_nodes(nodes),
      m_settings(std::move(settings)),
      m_password(std::move(password)),
      m_folder(makePrivateFolder()),
      m_sockets{m_folder / "dial", m_folder / "ask", m_folder / "forward"},
      m_passwordDoor(m_executor),
      m_output(m_executor),
      m_error(m_executor)
{
}

SshSession::~SshSession()
{
    if (m_bastionDoor)
        m_bastionDoor->stop();
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
    openBastionDoor();
    m_passwordDoor = LocalAcceptor(m_executor, LocalEndpoint(m_sockets.askpass.string()));
    m_child = std::make_unique<ChildProcess>(std::move(command.arguments), std::move(command.environment));
    m_output.assign(m_child->takeOutput().release());
    m_error.assign(m_child->takeError().release());
    m_events = std::move(events);
    asio::co_spawn(m_executor, servePassword(shared_from_this()), asio::detached);
    asio::co_spawn(m_executor, readOutput(shared_from_this()), asio::detached);
    asio::co_spawn(m_executor, readError(shared_from_this()), asio::detached);
}

void SshSession::stop()
{
    m_isStopped = true;
    m_events = {};
    boost::system::error_code ignored;
    if (m_bastionDoor)
        m_bastionDoor->stop();
    m_passwordDoor.close(ignored);
    m_output.close(ignored);
    m_error.close(ignored);
    m_child.reset();
    removeFolder();
}

/// ssh comes here once, for its way to the bastion. The folder keeps everybody else out.
void SshSession::openBastionDoor()
{
    LocalAcceptor door(m_forwarding.pool.leastLoaded().executor(), LocalEndpoint(m_sockets.dial.string()));
    Route route{.dial = dialThroughNode(m_nodes, m_forwarding.pool, m_settings.profile, bastionOf(m_settings))};
    m_bastionDoor = std::make_shared<Listener>(m_forwarding, StreamAcceptor(std::move(door)), std::move(route),
        [this](const Attempts &attempts) { m_dialProblem = attempts.problem; });
    m_bastionDoor->start();
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

decltype(Route::dial) SshSession::dialTarget() const
{
    return [path = m_sockets.forward.string()] { return connectTo(path); };
}

} // namespace veranox
