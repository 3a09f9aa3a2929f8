#include "Service/Publications/PublicationRunner.h"

#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Net/NetworkProblem.h"
#include "Service/Text/Timestamps.h"
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

asio::awaitable<StreamSocket> dialLocal(LoopbackEndpoint target)
{
    tcp::socket socket(co_await asio::this_coro::executor);
    const auto [failure] = co_await socket.async_connect({asio::ip::make_address(target.host), target.port}, asTuple);
    if (failure == asio::error::connection_refused)
        throw NetworkProblem("The local service at " + toText(target) + " refused the connection.");
    if (failure)
        throw NetworkProblem(
            "The local service at " + toText(target) + " cannot be reached: " + failure.message() + ".");
    boost::system::error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    co_return StreamSocket(std::move(socket));
}

} // namespace

PublicationRunner::PublicationRunner(Listener::Surroundings forwarding, NodeEngine &nodes, const TimeSource &time,
    PublicationSettings settings, std::string hostname)
    : m_forwarding(std::move(forwarding)),
      m_nodes(nodes),
      m_time(time),
      m_settings(std::move(settings)),
      m_hostname(std::move(hostname))
{
}

PublicationRunner::~PublicationRunner()
{
    close();
}

void PublicationRunner::open(SteadyTime now, bool admitsNobody)
{
    *m_admitsNobody = admitsNobody;
    if (m_listener || (m_retryAt && now < *m_retryAt))
        return;
    m_retryAt.reset();
    try {
        listen();
        m_error.clear();
    } catch (const std::invalid_argument &problem) {
        m_error = "The target " + std::string(problem.what()) + ".";
    } catch (const std::exception &problem) {
        m_error = problem.what();
        m_retryAt = now + m_backoff.next();
    }
}

void PublicationRunner::listen()
{
    const LoopbackEndpoint target = parseLoopbackEndpoint(m_settings.target, 1);
    if (m_settings.tls && !m_tls)
        m_tls = m_nodes.certificate(m_nodes.nodeNames(m_settings.profile, m_hostname).dnsName);
    NodePort port = m_nodes.openPort(m_forwarding.pool.leastLoaded().executor(), m_settings.profile, m_hostname,
        static_cast<std::uint16_t>(m_settings.port));
    m_lease = std::move(port.lease);
    // Whom the policy of the tailnet does not allow in is turned away before anything is said.
    Route route{.dial = [target] { return dialLocal(target); }, .tls = m_tls, .turnsAway = m_admitsNobody};
    m_listener = std::make_shared<Listener>(m_forwarding, StreamAcceptor(std::move(port.acceptor)), std::move(route),
        [this](const Attempts &attempts) { report(attempts); });
    m_listener->start();
}

void PublicationRunner::report(const Attempts &attempts)
{
    m_error = attempts.problem;
    if (attempts.anySucceeded)
        m_lastActive = m_time.wallNow();
}

void PublicationRunner::close()
{
    if (m_listener)
        m_listener->stop();
    m_listener.reset();
    m_lease.reset();
    m_error.clear();
    m_retryAt.reset();
    m_backoff.reset();
}

void PublicationRunner::describe(PublicationStatus &status) const
{
    status.state = m_listener ? "listening" : m_error.empty() ? "starting" : "error";
    status.lastError = m_error;
    if (m_lastActive)
        status.lastActive = timestamp(*m_lastActive);
    if (m_listener) {
        status.activeConns += m_listener->activeConns();
    } else {
        status.activeConns = 0;
        status.reachability = {};
    }
}

} // namespace veranox
