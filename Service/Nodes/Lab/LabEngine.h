#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Nodes/TimeSource.h"

namespace veranox {

/// Runs the nodes of a simulated network. What it says depends on the network and on the time since its start alone.
class LabEngine final : public NodeEngine {
public:
    /// The time must outlive the engine, which starts now.
    LabEngine(LabNetwork network, const TimeSource &time);

    NodeStatus profileStatus(const std::string &profile) const override;
    TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const override;
    PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const override;

private:
    LabTime elapsed() const;

    LabNetwork m_network;
    const TimeSource &m_time;
    std::chrono::steady_clock::time_point m_steadyStart;
    WallTime m_wallStart;
};

} // namespace veranox
