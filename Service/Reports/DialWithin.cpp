#include "Service/Reports/DialWithin.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/experimental/awaitable_operators.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

asio::awaitable<DialResult> tryDial(NodeEngine *nodes, std::string profile, HostPort target)
{
    DialResult result;
    try {
        result.socket = co_await nodes->dial(std::move(profile), target.host, target.port);
    } catch (const std::exception &failure) {
        result.problem = failure.what();
    }
    co_return result;
}

} // namespace

asio::awaitable<DialResult> dialWithin(
    NodeEngine *nodes, std::string profile, HostPort target, std::chrono::milliseconds most)
{
    using namespace asio::experimental::awaitable_operators;
    asio::steady_timer timer(co_await asio::this_coro::executor, most);
    auto first = co_await (tryDial(nodes, std::move(profile), std::move(target)) || timer.async_wait(asTuple));
    if (first.index() == 0)
        co_return std::move(std::get<0>(first));
    co_return DialResult{std::nullopt, "Nothing answered in time."};
}

} // namespace veranox
