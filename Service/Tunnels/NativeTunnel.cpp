#include "Service/Tunnels/NativeTunnel.h"

#include "Service/Net/HostPort.h"
#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Net/PortListener.h"

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

asio::awaitable<StreamSocket> dialTarget(NodeEngine *nodes, std::string profile, HostPort target)
{
    co_return co_await nodes->dial(std::move(profile), target.host, target.port);
}

} // namespace

NativeTunnel::NativeTunnel(
    asio::any_io_executor executor, NodeEngine &nodes, Conduits &conduits, TunnelSettings settings)
    : m_executor(std::move(executor)),
      m_nodes(nodes),
      m_conduits(conduits),
      m_settings(std::move(settings))
{
}

NativeTunnel::~NativeTunnel()
{
    close();
}

void NativeTunnel::open(SteadyTime now)
{
    if (m_forwarder || (m_retryAt && now < *m_retryAt))
        return;
    m_retryAt.reset();
    try {
        listen();
        m_error.clear();
    } catch (const std::invalid_argument &problem) {
        m_error = "An address of the tunnel " + std::string(problem.what()) + ".";
        m_retryAt = now + m_backoff.next();
    } catch (const std::exception &problem) {
        m_error = problem.what();
        m_retryAt = now + m_backoff.next();
    }
}

void NativeTunnel::listen()
{
    const HostPort target = parseHostPort(m_settings.target);
    if (const std::string problem = m_nodes.hostProblem(m_settings.profile, target.host); !problem.empty())
        throw NetworkProblem(problem);
    const LoopbackEndpoint local = parseLoopbackEndpoint(m_settings.listen, 1);
    m_forwarder = std::make_shared<PortForwarder>(
        openListener(m_executor, {asio::ip::make_address(local.host), local.port}), m_conduits,
        [nodes = &m_nodes, profile = m_settings.profile, target] { return dialTarget(nodes, profile, target); },
        [this](const std::string &problem) { m_error = problem; });
    m_forwarder->start();
}

void NativeTunnel::close()
{
    if (m_forwarder)
        m_forwarder->stop();
    m_forwarder.reset();
    m_error.clear();
    m_retryAt.reset();
    m_backoff.reset();
}

TunnelStatus NativeTunnel::status() const
{
    if (m_forwarder)
        return {.state = "listening", .activeConns = m_forwarder->activeConns(), .lastError = m_error};
    return {.state = m_error.empty() ? "starting" : "error", .activeConns = 0, .lastError = m_error};
}

} // namespace veranox
