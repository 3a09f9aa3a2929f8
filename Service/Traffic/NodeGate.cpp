#include "Service/Traffic/NodeGate.h"

namespace veranox {

namespace {

std::string stateWord(const NodeStatus &node)
{
    return node.ok ? "listening" : node.backendState == "Stopped" ? "error" : "starting";
}

std::string errorText(const NodeStatus &node)
{
    return node.backendState == "Stopped" ? node.error : "";
}

} // namespace

TunnelStatus NodeGate::tunnelStatus(const std::string &, const TunnelSettings &settings) const
{
    if (settings.disabled)
        return {};
    const NodeStatus node = m_nodes.profileStatus(settings.profile);
    return {.state = stateWord(node), .activeConns = 0, .lastError = errorText(node)};
}

PublicationStatus NodeGate::publicationStatus(
    const std::string &, const PublicationSettings &settings, const std::string &hostname) const
{
    PublicationStatus status;
    if (settings.reach == "funnel") {
        status.state = "blocked";
    } else if (!settings.disabled) {
        const NodeStatus node = m_nodes.profileStatus(settings.profile);
        status.state = stateWord(node);
        status.lastError = errorText(node);
        const std::string dnsName = m_nodes.nodeNames(settings.profile, hostname).dnsName;
        if (node.ok && !dnsName.empty())
            status.address = publishedAddress(settings, dnsName);
    }
    return status;
}

} // namespace veranox
