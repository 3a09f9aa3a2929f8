#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include "Service/Nodes/Lab/LabPhase.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Nodes/TimeSource.h"
#include <map>

namespace veranox {

/// Runs the nodes of a simulated network. What it says depends on the network, on the time since its start and on who
/// was signed in and out when, and on nothing else.
class LabEngine final : public NodeEngine {
public:
    /// The time must outlive the engine, which starts now.
    LabEngine(LabNetwork network, const TimeSource &time);

    NodeStatus profileStatus(const std::string &profile) const override;
    NodeAction login(const std::string &profile) override;
    NodeAction logout(const std::string &profile) override;
    TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const override;
    PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const override;

private:
    LabTime elapsed() const;
    LabSession sessionOf(const std::string &profile) const;
    /// How the node of that profile fares now.
    LabPhase nodePhase(const std::string &name, const LabProfile &profile) const;

    LabNetwork m_network;
    std::map<std::string, LabSession> m_sessions; // of the profiles that were signed in or out
    const TimeSource &m_time;
    std::chrono::steady_clock::time_point m_steadyStart;
    WallTime m_wallStart;
};

} // namespace veranox
