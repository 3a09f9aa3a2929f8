#include "Service/Nodes/NodeDial.h"

#include "Service/Net/NetworkProblem.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <optional>

namespace veranox {

namespace asio = boost::asio;

namespace {

using Dialled = std::optional<asio::ip::tcp::socket>;

void throwIfStopped(const TrafficPool &pool)
{
    if (pool.isStopped())
        throw NetworkProblem("The service is stopping.");
}

/// Once the pool has stopped the engine has, too, and is asked for nothing any more; and nobody takes what it has made
/// meanwhile: it is closed here.
asio::awaitable<Dialled> dialHere(NodeEngine *nodes, const TrafficPool *pool, std::string profile, HostPort target)
{
    throwIfStopped(*pool);
    Dialled made = co_await nodes->dial(std::move(profile), std::move(target.host), target.port);
    throwIfStopped(*pool);
    co_return made;
}

struct NodeRoute {
    NodeEngine *nodes;
    const TrafficPool *pool;
    asio::any_io_executor control;
    std::string profile;
    HostPort target;
};

asio::awaitable<StreamSocket> dialThere(NodeRoute route)
{
    const auto executor = co_await asio::this_coro::executor;
    Dialled made = co_await asio::co_spawn(
        route.control, dialHere(route.nodes, route.pool, route.profile, route.target), asio::use_awaitable);
    const auto protocol = made->local_endpoint().protocol();
    co_return StreamSocket(executor, {protocol}, made->release());
}

} // namespace

decltype(Route::dial) dialThroughNode(
    NodeEngine &nodes, const Listener::Surroundings &forwarding, std::string profile, HostPort target)
{
    return [route = NodeRoute{&nodes, &forwarding.pool, forwarding.control, std::move(profile), std::move(target)}] {
        return dialThere(route);
    };
}

} // namespace veranox
