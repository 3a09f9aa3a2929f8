#pragma once
#include "Service/Nodes/NodeEngine.h"

namespace veranox {

/// Stands where no engine was chosen: nothing runs, and everything says why.
class NoNodeEngine final : public NodeEngine {
public:
    explicit NoNodeEngine(WallTime started);

    NodeStatus profileStatus(const std::string &profile) const override;
    NodeAction login(const std::string &profile) override;
    NodeAction logout(const std::string &profile) override;
    TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const override;
    PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const override;

private:
    WallTime m_started;
};

} // namespace veranox
