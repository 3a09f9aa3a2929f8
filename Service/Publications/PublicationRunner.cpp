#include "Service/Publications/PublicationRunner.h"

#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Net/TlsEnd.h"
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

/// A connection that the policy of the tailnet does not allow ends before anything is said.
asio::awaitable<StreamSocket> admit(
    std::shared_ptr<bool> admitsNobody, std::shared_ptr<asio::ssl::context> tls, StreamSocket socket)
{
    if (*admitsNobody)
        closeWithReset(socket);
    else if (tls)
        co_return co_await endTls(std::move(socket), std::move(tls));
    co_return socket;
}

} // namespace

PublicationRunner::PublicationRunner(asio::any_io_executor executor, NodeEngine &nodes, Conduits &conduits,
    const TimeSource &time, PublicationSettings settings, std::string hostname)
    : m_executor(std::move(executor)),
      m_nodes(nodes),
      m_conduits(conduits),
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
    if (m_forwarder || (m_retryAt && now < *m_retryAt))
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
    NodePort port =
        m_nodes.openPort(m_executor, m_settings.profile, m_hostname, static_cast<std::uint16_t>(m_settings.port));
    m_lease = std::move(port.lease);
    m_forwarder = std::make_shared<PortForwarder>(
        std::move(port.acceptor), m_conduits, [target] { return dialLocal(target); },
        [this](const std::string &problem) { report(problem); });
    m_forwarder->setAdmit([admitsNobody = m_admitsNobody, tls = m_tls](
                              StreamSocket socket) { return admit(admitsNobody, tls, std::move(socket)); });
    m_forwarder->start();
}

void PublicationRunner::report(const std::string &problem)
{
    m_error = problem;
    if (problem.empty())
        m_lastActive = m_time.wallNow();
}

void PublicationRunner::close()
{
    if (m_forwarder)
        m_forwarder->stop();
    m_forwarder.reset();
    m_lease.reset();
    m_error.clear();
    m_retryAt.reset();
    m_backoff.reset();
}

void PublicationRunner::describe(PublicationStatus &status) const
{
    status.state = m_forwarder ? "listening" : m_error.empty() ? "starting" : "error";
    status.lastError = m_error;
    if (m_lastActive)
        status.lastActive = timestamp(*m_lastActive);
    if (m_forwarder) {
        status.activeConns += m_forwarder->activeConns();
    } else {
        status.activeConns = 0;
        status.reachability = {};
    }
}

} // namespace veranox
