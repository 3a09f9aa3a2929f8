#include "Service/Tunnels/SshTunnel.h"

namespace veranox {

namespace {

/// A connection that held so long was a good one: the next failure is not the continuation of the last.
constexpr std::chrono::seconds goodConnection{60};

const std::string passwordMissing = "The SSH password of this tunnel is not known; enter it in the tunnel's settings.";

} // namespace

SshTunnel::SshTunnel(TunnelSurroundings around, const SshPlaces &places, TunnelSettings settings, std::string password)
    : m_around(std::move(around)),
      m_places(places),
      m_settings(std::move(settings)),
      m_password(std::move(password)),
      m_door(m_around, m_settings.listen,
          {.attempted = [this](const std::string &problem) { m_error = problem; },
              .obstructed = [this](const PortObstacle &obstacle) { m_error = obstacle.sentence; }})
{
}

SshTunnel::~SshTunnel()
{
    close();
}

void SshTunnel::open(SteadyTime now)
{
    if (m_session || (m_retryAt && now < *m_retryAt))
        return;
    m_retryAt.reset();
    if (m_settings.ssh->auth == "password" && m_password.empty()) {
        m_error = passwordMissing;
        return;
    }
    try {
        begin();
    } catch (const std::exception &problem) {
        m_session.reset();
        fail(now, problem.what());
    }
}

void SshTunnel::begin()
{
    m_session = std::make_shared<SshSession>(m_around.forwarding, m_around.nodes, m_settings, m_password);
    m_session->start(
        m_places, {.up = [this] { listen(); }, .ended = [this](const std::string &complaint) { ended(complaint); }});
}

void SshTunnel::listen()
{
    const SteadyTime now = m_around.time.steadyNow();
    try {
        m_door.open({.dial = m_session->dialTarget()});
        m_upSince = now;
        m_error.clear();
    } catch (const std::exception &problem) {
        m_session->stop();
        m_session.reset();
        fail(now, problem.what());
        m_around.changed();
    }
}

void SshTunnel::ended(const std::string &complaint)
{
    const SteadyTime now = m_around.time.steadyNow();
    if (m_door.isOpen()) {
        m_door.close();
        if (now - m_upSince >= goodConnection)
            m_backoff.reset();
    }
    m_session.reset();
    fail(now, complaint);
    m_around.changed();
}

void SshTunnel::fail(SteadyTime now, std::string problem)
{
    m_error = std::move(problem);
    m_retryAt = now + m_backoff.next();
}

void SshTunnel::close()
{
    m_door.close();
    if (m_session)
        m_session->stop();
    m_session.reset();
    m_error.clear();
    m_retryAt.reset();
    m_backoff.reset();
}

void SshTunnel::setSecret(std::string password)
{
    if (password == m_password)
        return;
    m_password = std::move(password);
    if (m_settings.ssh->auth == "password" && !m_door.isOpen())
        close();
}

TunnelStatus SshTunnel::status() const
{
    if (!m_door.isOpen())
        return {.state = m_error.empty() ? "starting" : "error", .activeConns = 0, .lastError = m_error};
    const std::string complaint = m_error.empty() ? m_session->complaint() : m_error;
    return {.state = "listening", .activeConns = m_door.activeConns(), .lastError = complaint};
}

} // namespace veranox
