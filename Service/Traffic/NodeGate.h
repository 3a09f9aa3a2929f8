#pragma once
#include "Service/Nodes/NodeEngine.h"
#include "Service/Traffic/ForwardingGate.h"

namespace veranox {

/// Lets tunnels and publications be as the engine's nodes fare, and nothing else.
class NodeGate final : public ForwardingGate {
public:
    /// The engine must outlive it.
    explicit NodeGate(const NodeEngine &nodes) : m_nodes(nodes) { }

    TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const override;
    PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const override;
    bool isActedTunnel(const std::string &) const override { return false; }
    bool isActedPublication(const std::string &) const override { return false; }
    std::optional<std::chrono::steady_clock::time_point> nextChange() const override { return std::nullopt; }

private:
    const NodeEngine &m_nodes;
};

} // namespace veranox
