#include "Service/Nodes/NodeDial.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <optional>

namespace veranox {

namespace asio = boost::asio;

namespace {

using Dialled = std::optional<asio::ip::tcp::socket>;

asio::awaitable<Dialled> dialHere(NodeEngine *nodes, std::string profile, HostPort target)
{
    co_return co_await nodes->dial(std::move(profile), std::move(target.host), target.port);
}

asio::awaitable<StreamSocket> dialThere(
    NodeEngine *nodes, asio::any_io_executor control, std::string profile, HostPort target)
{
    const auto executor = co_await asio::this_coro::executor;
    Dialled made =
        co_await asio::co_spawn(control, dialHere(nodes, std::move(profile), std::move(target)), asio::use_awaitable);
    const auto protocol = made->local_endpoint().protocol();
    co_return StreamSocket(executor, {protocol}, made->release());
}

} // namespace

decltype(Route::dial) dialThroughNode(
    NodeEngine &nodes, asio::any_io_executor control, std::string profile, HostPort target)
{
    return [nodes = &nodes, control = std::move(control), profile = std::move(profile), target = std::move(target)] {
        return dialThere(nodes, control, profile, target);
    };
}

} // namespace veranox
