#pragma once
#include "Service/Net/HostPort.h"
#include "Service/Net/Route.h"
#include "Service/Nodes/NodeEngine.h"

namespace veranox {

/// Dials that target through the node of the profile, from any thread: the engine itself is asked on its own executor,
/// and what it made moves to whoever awaits it. The engine must outlive the dials.
decltype(Route::dial) dialThroughNode(
    NodeEngine &nodes, boost::asio::any_io_executor control, std::string profile, HostPort target);

} // namespace veranox
