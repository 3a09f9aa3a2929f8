#pragma once
#include "Service/Time/WallTime.h"
#include <string>

namespace veranox {

/// How a profile's node fares.
struct NodeStatus {
    bool ok = false;
    std::string backendState; // "NoState", "Starting", "NeedsLogin", "NeedsMachineAuth", "Running" or "Stopped"
    std::string raw; // what the node itself said
    std::string error; // why it is not ok, empty when it is
    WallTime since; // when the node was last seen to change to this

    bool operator==(const NodeStatus &) const = default;
};

} // namespace veranox
