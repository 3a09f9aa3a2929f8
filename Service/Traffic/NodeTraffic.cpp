#include "Service/Traffic/NodeTraffic.h"

#include "Service/Config/ProfileDefaults.h"
#include "Service/Reports/PathReport.h"
#include "Service/Tunnels/NativeTunnel.h"
#include "Service/Tunnels/SshTunnel.h"
#include <algorithm>
#include <boost/asio/post.hpp>

namespace veranox {

namespace {

constexpr std::string_view readyState = "listening";

/// What a connection notices of the settings: the name that people see is no part of it.
template <class Settings> Settings withoutLabel(Settings settings)
{
    settings.displayName.clear();
    return settings;
}

template <class Settings> bool isUnchanged(const Settings *before, const Settings *now)
{
    return before && now && withoutLabel(*before) == withoutLabel(*now);
}

/// What is to run, as far as the document goes.
bool isWanted(const TunnelSettings &tunnel)
{
    return !tunnel.disabled;
}

bool isWanted(const PublicationSettings &publication)
{
    return !publication.disabled && publication.reach != "funnel";
}

/// A profile that goes takes along what stands on it.
template <class Settings> bool isCarried(const IndexedConfig &config, const Settings &settings)
{
    return isWanted(settings) && config.profile(settings.profile);
}

} // namespace

NodeTraffic::NodeTraffic(boost::asio::any_io_executor executor, NodeEngine &nodes, const ForwardingGate &gate,
    const TimeSource &time, SshPlaces sshPlaces)
    : m_executor(std::move(executor)),
      m_nodes(nodes),
      m_gate(gate),
      m_time(time),
      m_sshPlaces(std::move(sshPlaces)),
      m_budget(Budget::ofThisProcess(), [this] { noteStrain(); }),
      m_pool(TrafficPool::usualSize(), m_budget),
      m_ports(m_executor),
      m_config(std::make_shared<const IndexedConfig>(std::make_shared<const ConfigDocument>())),
      m_routes(std::make_shared<const RouteTable>(std::make_shared<const ConfigDocument>())),
      m_timer(m_executor)
{
    m_nodes.setChanged([this, executor = m_executor, isAlive = std::weak_ptr(m_isAlive)] {
        boost::asio::post(executor, [this, isAlive] {
            if (!isAlive.expired())
                look();
        });
    });
}

NodeTraffic::~NodeTraffic()
{
    stop();
}

void NodeTraffic::apply(std::shared_ptr<const ConfigDocument> document)
{
    if (m_isStopped)
        return;
    auto next = std::make_shared<const IndexedConfig>(document);
    dropWhatChanged(*next);
    std::erase_if(
        m_secrets, [&](const auto &secret) { return m_config->tunnel(secret.first) && !next->tunnel(secret.first); });
    m_config = std::move(next);
    m_routes = std::make_shared<const RouteTable>(std::move(document));
    addWhatIsNew();
    look();
}

/// All that goes away does so before anything new begins, as an address may change hands.
void NodeTraffic::dropWhatChanged(const IndexedConfig &next)
{
    std::erase_if(m_tunnels, [&](const auto &entry) {
        const TunnelSettings *now = next.tunnel(entry.first);
        return !isUnchanged(m_config->tunnel(entry.first), now) || !isCarried(next, *now);
    });
    std::erase_if(m_publications, [&](const auto &entry) {
        const PublicationSettings *now = next.publication(entry.first);
        return !isUnchanged(m_config->publication(entry.first), now) || !isCarried(next, *now)
            || nodeHostname(*m_config, now->profile) != nodeHostname(next, now->profile);
    });
}

void NodeTraffic::addWhatIsNew()
{
    for (const auto &[name, settings] : m_config->document().tunnels)
        if (isCarried(*m_config, settings) && !m_gate.isActedTunnel(name) && !m_tunnels.contains(name))
            m_tunnels.emplace(name, makeTunnel(name, settings));
    for (const auto &[name, settings] : m_config->document().publications)
        if (isCarried(*m_config, settings) && !m_gate.isActedPublication(name) && !m_publications.contains(name))
            m_publications.emplace(name,
                std::make_unique<PublicationRunner>(Listener::Surroundings{m_pool, m_budget, m_executor}, m_nodes,
                    m_time, settings, nodeHostname(*m_config, settings.profile)));
}

TunnelSurroundings NodeTraffic::tunnelSurroundings()
{
    return {.forwarding = {m_pool, m_budget, m_executor},
        .nodes = m_nodes,
        .time = m_time,
        .ports = m_ports,
        .changed = [this] { awaitNextMoment(); }};
}

std::unique_ptr<TunnelRunner> NodeTraffic::makeTunnel(const std::string &name, const TunnelSettings &settings)
{
    if (settings.mode == "ssh")
        return std::make_unique<SshTunnel>(tunnelSurroundings(), m_sshPlaces, settings, m_secrets[name]);
    return std::make_unique<NativeTunnel>(tunnelSurroundings(), settings);
}

/// From any thread. However often there is no room, one call is on its way.
void NodeTraffic::noteStrain()
{
    if (!m_isStrainTold.exchange(false))
        return;
    boost::asio::post(m_executor, [this] {
        m_isStrainTold = true;
        if (m_strained && !m_isStopped)
            m_strained();
    });
}

void NodeTraffic::nodesChanged()
{
    look();
}

void NodeTraffic::look()
{
    if (m_isStopped)
        return;
    const SteadyTime now = m_time.steadyNow();
    lookAtPublications(now); // first, as a tunnel may lead to one
    lookAtTunnels(now);
    awaitNextMoment();
}

void NodeTraffic::lookAtPublications(SteadyTime now)
{
    for (const auto &[name, runner] : m_publications) {
        const PublicationStatus node = nodePublicationStatus(name, *m_config->publication(name));
        if (node.state == readyState)
            runner->open(now, node.reachability.state == "unreachable");
        else
            runner->close();
    }
}

void NodeTraffic::lookAtTunnels(SteadyTime now)
{
    for (const auto &[name, runner] : m_tunnels) {
        const TunnelStatus node = nodeTunnelStatus(name, *m_config->tunnel(name));
        if (node.state == readyState)
            runner->open(now);
        else
            runner->close();
    }
}

void NodeTraffic::awaitNextMoment()
{
    std::optional<SteadyTime> next = m_nodes.nextChange();
    const auto consider = [&](std::optional<SteadyTime> moment) {
        if (moment && (!next || *moment < *next))
            next = moment;
    };
    consider(m_gate.nextChange());
    for (const auto &[name, runner] : m_tunnels)
        consider(runner->retryAt());
    for (const auto &[name, runner] : m_publications)
        consider(runner->retryAt());
    m_timer.cancel();
    if (!next)
        return;
    m_timer.expires_after(*next - m_time.steadyNow());
    m_timer.async_wait([this](const boost::system::error_code &failure) {
        if (!failure)
            look();
    });
}

TunnelStatus NodeTraffic::nodeTunnelStatus(const std::string &name, const TunnelSettings &settings) const
{
    if (isWanted(settings) && !isCarried(*m_config, settings))
        return {.state = "error", .activeConns = 0, .lastError = unconfiguredProfile(settings.profile)};
    return m_gate.tunnelStatus(name, settings);
}

TunnelStatus NodeTraffic::tunnelStatus(const std::string &name) const
{
    const TunnelSettings *settings = m_config->tunnel(name);
    if (!settings)
        return {};
    TunnelStatus node = nodeTunnelStatus(name, *settings);
    const auto runner = m_tunnels.find(name);
    if (node.state != readyState || runner == m_tunnels.end())
        return node;
    TunnelStatus status = runner->second->status();
    if (status.state == readyState)
        status.activeConns += node.activeConns;
    return status;
}

PublicationStatus NodeTraffic::nodePublicationStatus(const std::string &name, const PublicationSettings &settings) const
{
    if (isWanted(settings) && !isCarried(*m_config, settings)) {
        PublicationStatus status;
        status.state = "error";
        status.lastError = unconfiguredProfile(settings.profile);
        return status;
    }
    return m_gate.publicationStatus(name, settings, nodeHostname(*m_config, settings.profile));
}

PublicationStatus NodeTraffic::publicationStatus(const std::string &name) const
{
    const PublicationSettings *settings = m_config->publication(name);
    if (!settings)
        return {};
    PublicationStatus status = nodePublicationStatus(name, *settings);
    const auto runner = m_publications.find(name);
    if (status.state == readyState && runner != m_publications.end())
        runner->second->describe(status);
    return status;
}

void NodeTraffic::restartTunnel(const std::string &name)
{
    const auto runner = m_tunnels.find(name);
    if (runner == m_tunnels.end())
        return;
    runner->second->close();
    look();
}

void NodeTraffic::restartPublication(const std::string &name)
{
    const auto runner = m_publications.find(name);
    if (runner == m_publications.end())
        return;
    runner->second->close();
    look();
}

void NodeTraffic::setTunnelSecret(const std::string &name, std::string password)
{
    m_secrets[name] = password;
    const auto runner = m_tunnels.find(name);
    if (runner == m_tunnels.end())
        return;
    runner->second->setSecret(std::move(password));
    look();
}

boost::asio::awaitable<boost::json::object> NodeTraffic::pathReport(PathQuestion question)
{
    co_return co_await makePathReport(&m_nodes, m_routes, std::move(question));
}

void NodeTraffic::stop()
{
    m_isStopped = true;
    m_nodes.setChanged({});
    m_timer.cancel();
    for (const auto &[name, runner] : m_tunnels)
        runner->close();
    for (const auto &[name, runner] : m_publications)
        runner->close();
    m_pool.stop(); // before the engine, which its streams may be asking
    m_nodes.stop();
}

} // namespace veranox
