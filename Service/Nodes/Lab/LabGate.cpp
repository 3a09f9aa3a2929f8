#include "Service/Nodes/Lab/LabGate.h"

#include "Service/Nodes/Lab/NextMoment.h"
#include "Service/Text/Timestamps.h"

namespace veranox {

namespace {

using Kind = LabPhase::Kind;

/// What a forwarding has to say about a node that failed, against a failure of its own.
std::string failureText(const LabPhase &phase, const LabPhase &node, const std::string &profile)
{
    return node.kind == Kind::failed ? "Profile \"" + profile + "\" is not running: " + phase.failure : phase.failure;
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

template <class Settings>
void considerForwardings(NextMoment &moment, LabTime nodeRuns, const NamedList<LabForwarding<Settings>> &list)
{
    for (const auto &[name, forwarding] : list) {
        moment.consider(nodeRuns + forwarding.startsAfter);
        moment.consider(nodeRuns, forwarding.failure);
    }
}

} // namespace

TunnelStatus LabGate::tunnelStatus(const std::string &name, const TunnelSettings &settings) const
{
    if (settings.disabled)
        return {};
    const LabProfile *profile = findNamed(m_engine.network().profiles, settings.profile);
    if (!profile)
        return {.state = "error", .activeConns = 0, .lastError = unknownLabProfile(settings.profile)};
    const LabTunnel *known = findNamed(m_engine.network().tunnels, name);
    const LabTunnel tunnel = known ? *known : LabTunnel{};
    const LabTime now = m_engine.elapsed();
    const LabPhase node = m_engine.nodePhase(settings.profile, *profile);
    const LabPhase phase = phaseOf(tunnel, node, now);
    return {.state = stateWord(phase),
        .activeConns = phase.kind == Kind::running ? tunnel.activeConns : 0,
        .lastError = failureText(phase, node, settings.profile)};
}

PublicationStatus LabGate::publicationStatus(
    const std::string &name, const PublicationSettings &settings, const std::string &hostname) const
{
    PublicationStatus status;
    if (settings.reach == "funnel")
        status.state = "blocked";
    if (settings.reach == "funnel" || settings.disabled)
        return status;
    const LabProfile *profile = findNamed(m_engine.network().profiles, settings.profile);
    if (!profile) {
        status.state = "error";
        status.lastError = unknownLabProfile(settings.profile);
        return status;
    }
    const LabPublication *known = findNamed(m_engine.network().publications, name);
    const LabPublication publication = known ? *known : LabPublication{};
    const LabTime now = m_engine.elapsed();
    const LabPhase node = m_engine.nodePhase(settings.profile, *profile);
    const LabPhase phase = phaseOf(publication, node, now);
    status.state = stateWord(phase);
    status.lastError = failureText(phase, node, settings.profile);
    if (node.kind == Kind::running)
        status.address =
            publishedAddress(settings, hostname + findNamed(m_engine.network().tailnets, profile->tailnet)->suffix);
    if (phase.kind == Kind::running) {
        status.activeConns = publication.activeConns;
        status.lastActive = publication.activeConns > 0 ? timestamp(m_engine.wallTime(phase.since)) : "";
        status.reachability = reachability(profile->policy);
    }
    return status;
}

bool LabGate::isActedTunnel(const std::string &name) const
{
    const LabTunnel *tunnel = findNamed(m_engine.network().tunnels, name);
    return tunnel != nullptr && tunnel->isActed;
}

bool LabGate::isActedPublication(const std::string &name) const
{
    const LabPublication *publication = findNamed(m_engine.network().publications, name);
    return publication != nullptr && publication->isActed;
}

/// Which tunnel goes through which profile is the configuration's matter, so all of them count for each node: a moment
/// too many does no harm.
std::optional<std::chrono::steady_clock::time_point> LabGate::nextChange() const
{
    NextMoment moment(m_engine.elapsed());
    for (const auto &[name, profile] : m_engine.network().profiles) {
        const LabPhase phase = m_engine.nodePhase(name, profile);
        if (phase.kind != Kind::running)
            continue;
        considerForwardings(moment, phase.since, m_engine.network().tunnels);
        considerForwardings(moment, phase.since, m_engine.network().publications);
    }
    const std::optional<LabTime> next = moment.next();
    return next ? std::optional(m_engine.steadyTime(*next)) : std::nullopt;
}

} // namespace veranox
