#include "Service/Reports/PathProbes.h"

#include "Service/Net/HostPort.h"
#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/experimental/awaitable_operators.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>

namespace veranox {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
constexpr std::chrono::milliseconds pingTime{3500}; // for all attempts together
constexpr std::chrono::milliseconds dialTime{1500};
constexpr std::chrono::milliseconds httpTime{2000};
constexpr std::uint64_t bodyLimit = 256 * 1024;

struct DialResult {
    std::optional<tcp::socket> socket;
    std::string problem;
};

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

std::chrono::milliseconds since(Clock::time_point begin)
{
    return std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - begin);
}

http::request<http::empty_body> pageRequest(const PathTarget &target)
{
    http::request<http::empty_body> request(http::verb::get, target.path, 11);
    request.set(http::field::host, target.host);
    request.set(http::field::user_agent, "Veranox path report");
    request.set(http::field::connection, "close");
    return request;
}

std::string sentence(const beast::error_code &failure)
{
    if (failure == beast::error::timeout)
        return "The host took the connection but did not answer in time.";
    if (failure == http::error::end_of_stream || failure == asio::error::connection_reset)
        return "The host took the connection and closed it without an answer.";
    if (failure.category() == http::make_error_code(http::error::bad_version).category())
        return "The host took the connection but does not speak HTTP.";
    return "The HTTP request failed: " + failure.message() + ".";
}

/// The exchange itself; the times in the result are counted from `begin`.
asio::awaitable<HttpResult> exchange(tcp::socket socket, PathTarget target, HttpResult result, Clock::time_point begin)
{
    beast::tcp_stream stream(std::move(socket));
    stream.expires_after(httpTime);
    const http::request<http::empty_body> request = pageRequest(target);
    const auto [unsent, sent] = co_await http::async_write(stream, request, asTuple);
    beast::flat_buffer buffer;
    http::response_parser<http::string_body> parser;
    parser.body_limit(bodyLimit);
    beast::error_code failure = unsent;
    if (!failure)
        failure = std::get<0>(co_await http::async_read_header(stream, buffer, parser, asTuple));
    if (!failure) {
        result.toHeaders = result.toFirstByte = since(begin);
        result.statusCode = parser.get().result_int();
        result.status = std::to_string(result.statusCode) + " " + std::string(parser.get().reason());
        result.contentType = parser.get()[http::field::content_type];
    }
    while (!failure && !parser.is_done()) {
        failure = std::get<0>(co_await http::async_read_some(stream, buffer, parser, asTuple));
        if (result.bytesRead == 0)
            result.toFirstByte = since(begin);
        result.bytesRead = parser.get().body().size();
    }
    const bool isLong = failure == http::error::body_limit; // enough to know that it answers
    result.ok = !failure || isLong;
    result.error = result.ok ? "" : sentence(failure);
    result.total = since(begin);
    co_return result;
}

} // namespace

asio::awaitable<PingResult> ping(NodeEngine *nodes, std::string profile, PathTarget target, unsigned count)
{
    PingResult result;
    const auto begin = Clock::now();
    for (unsigned attempt = 0; attempt < std::clamp(count, 1U, 10U); ++attempt) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(begin + pingTime - Clock::now());
        if (left <= std::chrono::milliseconds(0))
            break;
        const auto attemptBegin = Clock::now();
        const DialResult dialled =
            co_await dialWithin(nodes, profile, {target.host, target.port}, std::min(left, dialTime));
        const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - attemptBegin);
        if (dialled.socket)
            result.took = result.ok ? std::min(result.took, took) : took;
        else
            result.error = dialled.problem;
        result.ok = result.ok || dialled.socket.has_value();
    }
    if (result.ok)
        result.error.clear();
    else
        result.took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    co_return result;
}

asio::awaitable<HttpResult> probeHttp(NodeEngine *nodes, std::string profile, PathTarget target)
{
    HttpResult result;
    const HostPort endpoint{target.host, target.port};
    const bool isSecure = target.scheme == "https";
    const std::string host = target.host.contains(':') ? "[" + target.host + "]" : target.host;
    result.url = (isSecure ? "https://" : "http://") + host + ":" + std::to_string(target.port) + target.path;
    if (isSecure) {
        result.error = "The probe does not speak TLS; whether the host takes connections is told by the ping.";
        co_return result;
    }
    const auto begin = Clock::now();
    DialResult dialled = co_await dialWithin(nodes, std::move(profile), endpoint, dialTime);
    if (!dialled.socket) {
        result.error = dialled.problem;
        result.total = since(begin);
        co_return result;
    }
    co_return co_await exchange(std::move(*dialled.socket), std::move(target), std::move(result), begin);
}

} // namespace veranox
