#pragma once
#include "Service/Net/HostPort.h"
#include "Service/Net/Route.h"
#include "Service/Net/TrafficPool.h"
#include "Service/Nodes/NodeEngine.h"

namespace veranox {

/// Dials that target through the node of the profile, on the thread of the pool that asks. Once the pool is stopped the
/// engine is asked for nothing any more. Engine and pool must outlive the dials.
decltype(Route::dial) dialThroughNode(NodeEngine &nodes, const TrafficPool &pool, std::string profile, HostPort target);

} // namespace veranox
