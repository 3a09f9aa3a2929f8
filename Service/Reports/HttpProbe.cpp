#include "Service/Net/TlsClient.h"
#include "Service/Reports/DialWithin.h"
#include "Service/Reports/PathProbes.h"
#include "Service/Text/Words.h"
#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>
#include <boost/beast/http/write.hpp>
#include <memory>
#include <optional>

namespace veranox {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
constexpr std::chrono::milliseconds handshakeTime{1500};
constexpr std::chrono::milliseconds httpTime{2000};
constexpr std::uint64_t enoughOfABody = 256 * 1024; // to know that the host answers
constexpr int mostAnswers = 20; // to one request, where all but the last come on the way to it
constexpr std::size_t pieceSize = 16 * 1024; // the most of an answer that is kept at a time

std::chrono::milliseconds since(Clock::time_point begin)
{
    return std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - begin);
}

std::string addressOf(const PathTarget &target)
{
    const std::string scheme = target.isSecure() ? "https://" : "http://";
    const std::string host = target.host.contains(':') ? "[" + target.host + "]" : target.host;
    return scheme + host + ":" + std::to_string(target.port) + target.path;
}

http::request<http::empty_body> pageRequest(const PathTarget &target)
{
    http::request<http::empty_body> request(http::verb::get, target.path, 11);
    request.set(http::field::host, hostField(target));
    request.set(http::field::user_agent, "Veranox path report");
    request.set(http::field::connection, "close");
    return request;
}

std::string sentence(const beast::error_code &failure)
{
    if (failure == beast::error::timeout)
        return "The host took the connection but did not answer in time.";
    if (failure == http::error::end_of_stream || failure == asio::error::connection_reset
        || failure == asio::ssl::error::stream_truncated)
        return "The host took the connection and closed it without an answer.";
    if (failure == http::error::header_limit || failure == http::error::buffer_overflow)
        return "The host took the connection, but the header of its answer is too long.";
    if (failure.category() == http::make_error_code(http::error::bad_version).category())
        return "The host took the connection but does not speak HTTP.";
    return "The HTTP request failed: " + failure.message() + ".";
}

/// What a host says of itself, as it may stand in a sentence.
std::string told(std::string_view text)
{
    constexpr std::size_t longest = 200;
    return shortened(printable(text), longest);
}

using PageParser = http::response_parser<http::buffer_body>;

struct ProbeTimes {
    Clock::time_point begin; // from which the times in the result are counted
    Clock::time_point deadline;
};

/// The header of the answer itself: what a host says on the way to it (100 Continue and its like) is passed over.
template <class Stream>
asio::awaitable<beast::error_code> readHeader(
    Stream *stream, beast::flat_buffer *buffer, std::optional<PageParser> *parser)
{
    for (int answers = 0; answers < mostAnswers; ++answers) {
        parser->emplace();
        (*parser)->body_limit(boost::none);
        const auto [failure, size] = co_await http::async_read_header(*stream, *buffer, **parser, asTuple);
        if (failure || http::to_status_class((*parser)->get().result_int()) != http::status_class::informational)
            co_return failure;
    }
    co_return http::error::bad_status;
}

/// The rest of the answer once its header is there, piece by piece and as much as is enough. Many hosts end TLS
/// without a farewell, so that counts as the end of an answer that goes on until the end.
template <class Stream>
asio::awaitable<beast::error_code> readBody(
    Stream *stream, beast::flat_buffer *buffer, PageParser *parser, HttpResult *result, ProbeTimes times)
{
    const auto piece = std::make_unique<std::array<char, pieceSize>>();
    beast::error_code failure;
    while (!failure && !parser->is_done() && result->bytesRead < enoughOfABody) {
        parser->get().body().data = piece->data();
        parser->get().body().size = piece->size();
        failure = std::get<0>(co_await http::async_read_some(*stream, *buffer, *parser, asTuple));
        if (failure == asio::ssl::error::stream_truncated)
            parser->put_eof(failure);
        if (failure == http::error::need_buffer)
            failure = {};
        if (!failure
            && Clock::now() >= times.deadline) // which the stream misses while there is always something to read
            failure = beast::error::timeout;
        if (result->bytesRead == 0)
            result->toFirstByte = since(times.begin);
        result->bytesRead += piece->size() - parser->get().body().size;
    }
    co_return failure;
}

void noteHeader(const PageParser::value_type &answer, HttpResult &result)
{
    result.statusCode = answer.result_int();
    result.status = std::to_string(result.statusCode) + " " + told(answer.reason());
    result.contentType = told(answer[http::field::content_type]);
}

/// Request and answer over a connection that is ready for them; the times in the result are counted from `begin`.
template <class Stream>
asio::awaitable<void> exchange(Stream *stream, PathTarget target, HttpResult *result, Clock::time_point begin)
{
    const ProbeTimes times{.begin = begin, .deadline = Clock::now() + httpTime};
    beast::get_lowest_layer(*stream).expires_at(times.deadline);
    const http::request<http::empty_body> request = pageRequest(target);
    const auto [unsent, sent] = co_await http::async_write(*stream, request, asTuple);
    beast::flat_buffer buffer(pieceSize);
    std::optional<PageParser> parser;
    beast::error_code failure = unsent;
    if (!failure)
        failure = co_await readHeader(stream, &buffer, &parser);
    if (!failure) {
        result->toHeaders = result->toFirstByte = since(begin);
        noteHeader(parser->get(), *result);
        failure = co_await readBody(stream, &buffer, &*parser, result, times);
    }
    result->ok = !failure;
    result->error = result->ok ? "" : sentence(failure);
}

asio::awaitable<void> exchangeSecurely(
    tcp::socket socket, asio::ssl::context *context, PathTarget target, HttpResult *result, Clock::time_point begin)
{
    TlsStream stream(std::move(socket), *context);
    beast::get_lowest_layer(stream).expires_after(handshakeTime);
    TlsGreeting greeting = co_await greet(&stream, target.host);
    result->error = std::move(greeting.error);
    result->certificateProblem = std::move(greeting.certificateProblem);
    if (result->error.empty())
        co_await exchange(&stream, std::move(target), result, begin);
}

asio::awaitable<void> exchangePlainly(
    tcp::socket socket, PathTarget target, HttpResult *result, Clock::time_point begin)
{
    beast::tcp_stream stream(std::move(socket));
    co_await exchange(&stream, std::move(target), result, begin);
}

} // namespace

asio::awaitable<HttpResult> probeHttp(NodeEngine *nodes, std::string profile, PathTarget target)
{
    HttpResult result;
    result.url = addressOf(target);
    std::unique_ptr<asio::ssl::context> context;
    if (target.isSecure())
        context = co_await clientContext();
    const auto begin = Clock::now();
    const HostPort endpoint{target.host, target.port};
    DialResult dialled = co_await dialWithin(nodes, std::move(profile), endpoint, longestDial);
    if (!dialled.socket)
        result.error = dialled.problem;
    else if (context)
        co_await exchangeSecurely(std::move(*dialled.socket), context.get(), std::move(target), &result, begin);
    else
        co_await exchangePlainly(std::move(*dialled.socket), std::move(target), &result, begin);
    result.total = since(begin);
    co_return result;
}

} // namespace veranox
