#include "Service/Nodes/Lab/LabEngine.h"

#include "Service/Text/Timestamps.h"

namespace veranox {

namespace {

using Kind = LabPhase::Kind;

struct NodeWords {
    std::string state;
    std::string error;
};

NodeWords wordsFor(const LabPhase &phase, bool needsLogin)
{
    switch (phase.kind) {
    case Kind::unknown:
        return {"NoState", "The node has not reported its state yet."};
    case Kind::starting:
        return {"Starting", "The node is joining its tailnet."};
    case Kind::asking:
        return needsLogin ? NodeWords{"NeedsLogin", "The node needs an interactive login."}
                          : NodeWords{"NeedsMachineAuth", "The node waits for an admin of its tailnet to approve it."};
    case Kind::running:
        return {"Running", ""};
    case Kind::failed:
        return {"Stopped", phase.failure};
    }
    return {};
}

std::string quoted(const std::string &name)
{
    return "\"" + name + "\"";
}

std::string unknownProfile(const std::string &profile)
{
    return "The lab network does not describe a profile " + quoted(profile) + "; add it to the lab file.";
}

/// What a forwarding has to say about a node that failed, against a failure of its own.
std::string failureText(const LabPhase &phase, const LabPhase &node, const std::string &profile)
{
    return node.kind == Kind::failed ? "Profile " + quoted(profile) + " is not running: " + phase.failure
                                     : phase.failure;
}

std::string stateWord(const LabPhase &phase)
{
    return phase.kind == Kind::running ? "listening" : phase.kind == Kind::failed ? "error" : "starting";
}

Reachability reachability(const LabPolicy &policy)
{
    switch (policy.admits) {
    case LabPolicy::Admits::everyone:
        return {.state = "reachable", .peers = 0, .everyone = true, .detail = "", .hint = std::nullopt};
    case LabPolicy::Admits::some:
        return {.state = "reachable", .peers = policy.devices, .everyone = false, .detail = "", .hint = std::nullopt};
    case LabPolicy::Admits::nobody:
        return {.state = "unreachable", .peers = 0, .everyone = false, .detail = "", .hint = policy.hint};
    case LabPolicy::Admits::unknown:
        return {.state = "unknown", .peers = 0, .everyone = false, .detail = policy.detail, .hint = std::nullopt};
    }
    return {};
}

/// What other devices of the tailnet type; the port of https goes without saying.
std::string publishedAddress(const PublicationSettings &settings, const std::string &host)
{
    std::string withPort = host + ":" + std::to_string(settings.port);
    if (!settings.tls)
        return withPort;
    return "https://" + (settings.port == 443 ? host : withPort);
}

} // namespace

LabEngine::LabEngine(LabNetwork network, const TimeSource &time)
    : m_network(std::move(network)),
      m_time(time),
      m_steadyStart(time.steadyNow()),
      m_wallStart(time.wallNow())
{
}

LabTime LabEngine::elapsed() const
{
    return std::chrono::floor<LabTime>(m_time.steadyNow() - m_steadyStart);
}

LabSession LabEngine::sessionOf(const std::string &profile) const
{
    const auto known = m_sessions.find(profile);
    return known == m_sessions.end() ? LabSession{} : known->second;
}

LabPhase LabEngine::nodePhase(const std::string &name, const LabProfile &profile) const
{
    return phaseOf(profile, sessionOf(name), elapsed());
}

NodeStatus LabEngine::profileStatus(const std::string &profile) const
{
    const LabProfile *lab = findNamed(m_network.profiles, profile);
    if (!lab)
        return {
            .ok = false, .backendState = "Stopped", .raw = "", .error = unknownProfile(profile), .since = m_wallStart};
    const LabPhase phase = nodePhase(profile, *lab);
    const NodeWords words = wordsFor(phase, needsLogin(*lab, sessionOf(profile)));
    return {.ok = phase.kind == Kind::running,
        .backendState = words.state,
        .raw = "lab node on tailnet " + lab->tailnet + ": " + words.state,
        .error = words.error,
        .since = m_wallStart + phase.since};
}

TunnelStatus LabEngine::tunnelStatus(const std::string &name, const TunnelSettings &settings) const
{
    if (settings.disabled)
        return {};
    const LabProfile *profile = findNamed(m_network.profiles, settings.profile);
    if (!profile)
        return {.state = "error", .activeConns = 0, .lastError = unknownProfile(settings.profile)};
    const LabTunnel *known = findNamed(m_network.tunnels, name);
    const LabTunnel tunnel = known ? *known : LabTunnel{};
    const LabTime now = elapsed();
    const LabPhase node = nodePhase(settings.profile, *profile);
    const LabPhase phase = phaseOf(tunnel, node, now);
    return {.state = stateWord(phase),
        .activeConns = phase.kind == Kind::running ? tunnel.activeConns : 0,
        .lastError = failureText(phase, node, settings.profile)};
}

PublicationStatus LabEngine::publicationStatus(
    const std::string &name, const PublicationSettings &settings, const std::string &hostname) const
{
    PublicationStatus status;
    if (settings.reach == "funnel")
        status.state = "blocked";
    if (settings.reach == "funnel" || settings.disabled)
        return status;
    const LabProfile *profile = findNamed(m_network.profiles, settings.profile);
    if (!profile) {
        status.state = "error";
        status.lastError = unknownProfile(settings.profile);
        return status;
    }
    const LabPublication *known = findNamed(m_network.publications, name);
    const LabPublication publication = known ? *known : LabPublication{};
    const LabTime now = elapsed();
    const LabPhase node = nodePhase(settings.profile, *profile);
    const LabPhase phase = phaseOf(publication, node, now);
    status.state = stateWord(phase);
    status.lastError = failureText(phase, node, settings.profile);
    if (node.kind == Kind::running)
        status.address = publishedAddress(settings, hostname + findNamed(m_network.tailnets, profile->tailnet)->suffix);
    if (phase.kind == Kind::running) {
        status.activeConns = publication.activeConns;
        status.lastActive = publication.activeConns > 0 ? timestamp(m_wallStart + phase.since) : "";
        status.reachability = reachability(profile->policy);
    }
    return status;
}

} // namespace veranox
