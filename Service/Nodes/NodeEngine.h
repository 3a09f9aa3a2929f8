#pragma once
#include "Service/Nodes/NodeStatus.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <string>

namespace veranox {

/// What came of signing a node in or out.
struct NodeAction {
    bool ok = false;
    std::string output; // for people to read
    std::string error; // why it is not ok; empty when it is, and when the address has to be visited first
    std::string authURL; // https: where a person approves the sign-in; empty when there is nothing to approve

    bool operator==(const NodeAction &) const = default;
};

/// Where nodes come from: runs one node per profile and knows how each fares. Answers at once from what it knows and
/// never fails; a name that it does not know is a status that says so.
class NodeEngine {
public:
    virtual ~NodeEngine() = default;

    virtual NodeStatus profileStatus(const std::string &profile) const = 0;
    /// Begins to sign the node in. While a sign-in waits for its approval, the same address is given again.
    virtual NodeAction login(const std::string &profile) = 0;
    /// Signs the node out, so that it needs a login.
    virtual NodeAction logout(const std::string &profile) = 0;
    virtual TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const = 0;
    /// `hostname` is the host name of the node that publishes.
    virtual PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const = 0;
};

} // namespace veranox
