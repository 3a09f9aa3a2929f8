#pragma once
#include "Service/Net/HostPort.h"
#include "Service/Net/Listener.h"
#include "Service/Nodes/NodeEngine.h"

namespace veranox {

/// Dials that target through the node of the profile, from any thread of the pool: the engine itself is asked on
/// control's, and what it made moves to whoever awaits it. Engine and pool must outlive the dials.
decltype(Route::dial) dialThroughNode(
    NodeEngine &nodes, const Listener::Surroundings &forwarding, std::string profile, HostPort target);

} // namespace veranox
