#pragma once
#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Traffic/ForwardingGate.h"

namespace veranox {

/// Lets tunnels and publications be as the lab file wants it: each starts and fails in its own time, and some only show
/// a state and carry nothing.
class LabGate final : public ForwardingGate {
public:
    /// The engine must outlive it.
    explicit LabGate(const LabEngine &engine) : m_engine(engine) { }

    TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const override;
    PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const override;
    bool isActedTunnel(const std::string &name) const override;
    bool isActedPublication(const std::string &name) const override;
    std::optional<std::chrono::steady_clock::time_point> nextChange() const override;

private:
    const LabEngine &m_engine;
};

} // namespace veranox
