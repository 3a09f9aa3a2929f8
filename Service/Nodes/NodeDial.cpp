#include "Service/Nodes/NodeDial.h"

#include "Service/Net/NetworkProblem.h"
#include <boost/asio/use_awaitable.hpp>

namespace veranox {

namespace asio = boost::asio;

namespace {

struct NodeRoute {
    NodeEngine *nodes;
    const TrafficPool *pool;
    std::string profile;
    HostPort target;
};

asio::awaitable<StreamSocket> dialNode(NodeRoute route)
{
    if (route.pool->isStopped())
        throw NetworkProblem("The service is stopping.");
    co_return co_await route.nodes->dial(std::move(route.profile), std::move(route.target.host), route.target.port);
}

} // namespace

decltype(Route::dial) dialThroughNode(NodeEngine &nodes, const TrafficPool &pool, std::string profile, HostPort target)
{
    return [route = NodeRoute{&nodes, &pool, std::move(profile), std::move(target)}] { return dialNode(route); };
}

} // namespace veranox
