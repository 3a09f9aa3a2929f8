#pragma once
#include "Service/Nodes/NodeEngine.h"
#include "Service/Reports/PathQuestion.h"
#include "Service/Routing/RouteTable.h"
#include <boost/json/object.hpp>
#include <memory>

namespace veranox {

/// Tries the way to a target: who owns it, how that node fares, whether the name is known, whether connections succeed
/// and a page comes. Always all keys, always in less than 10 seconds, never fails. The engine must outlive it.
boost::asio::awaitable<boost::json::object> makePathReport(
    NodeEngine *nodes, std::shared_ptr<const RouteTable> routes, PathQuestion question);

} // namespace veranox
