#pragma once
#include "Service/Net/Listener.h"
#include "Service/Net/PortInquiry.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Time/TimeSource.h"
#include <functional>

namespace veranox {

/// What every tunnel needs of the service. All of it outlives the tunnels.
struct TunnelSurroundings {
    Listener::Surroundings forwarding;
    NodeEngine &nodes;
    const TimeSource &time;
    PortInquiry &ports;
    std::function<void()> changed; // called when another next attempt has been set
};

} // namespace veranox
