#include "Service/Tunnels/NativeTunnel.h"

#include "Service/Net/HostPort.h"
#include "Service/Net/PortListener.h"
#include "Service/Nodes/NodeDial.h"

namespace veranox {

namespace {

/// A passing connection is in the way for a short time, as a rule: so long it is waited out, then as any other problem.
constexpr std::chrono::milliseconds quickPause{250};
constexpr unsigned mostQuickAttempts = 20;

} // namespace

NativeTunnel::NativeTunnel(TunnelSurroundings around, TunnelSettings settings)
    : m_around(std::move(around)),
      m_settings(std::move(settings)),
      m_door(m_around, m_settings.listen,
          {.attempted = [this](const std::string &problem) { m_error = problem; },
              .obstructed = [this](const PortObstacle &obstacle) { obstructed(obstacle); }})
{
}

void NativeTunnel::open(SteadyTime now)
{
    if (m_door.isOpen() || (m_retryAt && now < *m_retryAt))
        return;
    m_retryAt.reset();
    try {
        listen();
        m_error.clear();
        m_isObstructed = false;
    } catch (const AddressInUse &problem) {
        fail(now, m_isObstructed ? m_error : problem.what());
    } catch (const std::invalid_argument &problem) {
        fail(now, "An address of the tunnel " + std::string(problem.what()) + ".");
    } catch (const std::exception &problem) {
        fail(now, problem.what());
    }
}

void NativeTunnel::fail(SteadyTime now, std::string problem)
{
    m_error = std::move(problem);
    m_retryAt = now + m_backoff.next();
}

/// Comes after the attempt that failed, whose next one may be brought forward.
void NativeTunnel::obstructed(const PortObstacle &obstacle)
{
    m_error = obstacle.sentence;
    m_isObstructed = true;
    if (!obstacle.isPassing || m_quickAttempts >= mostQuickAttempts)
        return;
    ++m_quickAttempts;
    m_backoff.reset();
    m_retryAt = m_around.time.steadyNow() + quickPause;
    m_around.changed();
}

void NativeTunnel::listen()
{
    const HostPort target = parseHostPort(m_settings.target);
    if (const std::string problem = m_around.nodes.hostProblem(m_settings.profile, target.host); !problem.empty())
        throw NetworkProblem(problem);
    m_door.open({.dial = dialThroughNode(m_around.nodes, m_around.forwarding.pool, m_settings.profile, target)});
    m_quickAttempts = 0;
}

void NativeTunnel::close()
{
    m_door.close();
    m_error.clear();
    m_isObstructed = false;
    m_quickAttempts = 0;
    m_retryAt.reset();
    m_backoff.reset();
}

TunnelStatus NativeTunnel::status() const
{
    if (m_door.isOpen())
        return {.state = "listening", .activeConns = m_door.activeConns(), .lastError = m_error};
    return {.state = m_error.empty() ? "starting" : "error", .activeConns = 0, .lastError = m_error};
}

} // namespace veranox
