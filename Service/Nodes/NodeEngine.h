#pragma once
#include "Service/Nodes/NodeStatus.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <string>

namespace veranox {

/// Where nodes come from: runs one node per profile and knows how each fares. Answers at once from what it knows and
/// never fails; a name that it does not know is a status that says so.
class NodeEngine {
public:
    virtual ~NodeEngine() = default;

    virtual NodeStatus profileStatus(const std::string &profile) const = 0;
    virtual TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const = 0;
    /// `hostname` is the host name of the node that publishes.
    virtual PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const = 0;
};

} // namespace veranox
