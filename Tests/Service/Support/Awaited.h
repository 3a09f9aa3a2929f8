#pragma once
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>

namespace veranox::test {

/// What it comes to, on an io_context of its own.
template <class Result> Result awaited(boost::asio::awaitable<Result> operation)
{
    boost::asio::io_context context(1);
    auto result = boost::asio::co_spawn(context, std::move(operation), boost::asio::use_future);
    context.run();
    return result.get();
}

} // namespace veranox::test
