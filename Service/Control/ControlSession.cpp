#include "Service/Control/ControlSession.h"

#include "Service/Control/ControlServer.h"
#include "Service/Json/JsonText.h"
#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/error.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>

namespace veranox {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

/// What a request that cannot be read is told, or nothing when nobody is there to be told.
std::optional<ControlAnswer> answerTo(beast::error_code failure)
{
    if (failure == http::error::header_limit)
        return refusal(431, "The header of the request is too large.");
    if (failure == http::error::body_limit)
        return refusal(413, "The body of the request is too large.");
    if (failure == http::error::buffer_overflow)
        return refusal(413, "The body of the request comes with too much around it.");
    const bool isSyntax = failure.category() == http::make_error_code(http::error::bad_target).category();
    if (isSyntax && failure != http::error::end_of_stream && failure != http::error::partial_message)
        return refusal(400, "The request is not well-formed HTTP.");
    return std::nullopt;
}

/// No page of others may read, embed or keep an answer, or learn from where it was left; there is no permission for
/// other origins.
void forbidWebUse(http::response<http::string_body> &response)
{
    response.set(http::field::cache_control, "no-store");
    response.set("X-Content-Type-Options", "nosniff");
    response.set("Cross-Origin-Resource-Policy", "same-origin");
    response.set("Cross-Origin-Opener-Policy", "same-origin");
    response.set("Referrer-Policy", "no-referrer");
}

void fill(http::response<http::string_body> &response, const ControlAnswer &answer)
{
    constexpr auto policy = "Content-Security-Policy";
    if (answer.document) {
        response.set(http::field::content_type, answer.document->type);
        response.set(policy, answer.document->policy);
        response.body() = answer.document->text;
        return;
    }
    response.set(http::field::content_type, "application/json");
    response.set(policy, "default-src 'none'; frame-ancestors 'none'");
    response.body() = compactJson(answer.body);
}

} // namespace

ControlSession::ControlSession(asio::ip::tcp::socket socket, ControlServer &server)
    : m_stream(std::move(socket)),
      m_server(server),
      m_buffer(server.limits().headerBytes + server.limits().pieceBytes),
      m_waitingSince(std::chrono::steady_clock::now())
{
}

void ControlSession::start()
{
    asio::co_spawn(m_stream.get_executor(), run(shared_from_this()), asio::detached);
}

void ControlSession::close()
{
    m_stream.close();
}

void ControlSession::enter(Stage stage)
{
    m_stage = stage;
    m_waitingSince = std::chrono::steady_clock::now();
}

asio::awaitable<void> ControlSession::run(std::shared_ptr<ControlSession> self)
{
    while (co_await serveOne())
        m_isFirstRequest = false;
    m_stream.close();
    m_server.sessionEnded(*self);
}

asio::awaitable<bool> ControlSession::serveOne()
{
    enter(Stage::request);
    const bool isThere = co_await awaitFirstByte();
    if (!isThere)
        co_return false;
    m_requestBegan = std::chrono::steady_clock::now();
    m_stream.expires_after(m_server.limits().request);
    const bool hasHeader = co_await readHeader();
    if (!hasHeader)
        co_return false;
    if (std::optional<ControlAnswer> refused = m_server.api().refuseEarly(m_request))
        co_return co_await refuseBeforeBody(std::move(*refused));
    const bool hasBody = co_await readBody();
    if (!hasBody)
        co_return false;
    enter(Stage::working);
    ControlRequest request = m_request;
    request.body = std::move(m_parser->get().body().text);
    ControlAnswer answer = co_await m_server.api().answer(std::move(request));
    co_return co_await send(std::move(answer));
}

asio::awaitable<bool> ControlSession::awaitFirstByte()
{
    if (m_buffer.size() > 0)
        co_return true;
    constexpr std::size_t firstPiece = 4096;
    m_stream.expires_after(m_isFirstRequest ? m_server.limits().firstByte : m_server.limits().idle);
    const auto [failure, count] = co_await m_stream.async_read_some(m_buffer.prepare(firstPiece), asTuple);
    m_buffer.commit(count);
    co_return !failure;
}

asio::awaitable<bool> ControlSession::readHeader()
{
    m_request = {};
    m_wantsMore = false;
    m_parser.emplace();
    m_parser->header_limit(m_server.limits().headerBytes);
    m_parser->body_limit(m_server.limits().bodyBytes);
    const auto [failure, count] = co_await http::async_read_header(m_stream, m_buffer, *m_parser, asTuple);
    if (failure)
        co_return co_await refuseUnreadable(failure);
    m_request = currentRequest();
    if (hasUnknownCoding(m_parser->get())) {
        ControlAnswer answer = refusal(501, "The only transfer coding that this service knows is chunked.");
        answer.then = ControlAnswer::Then::closeConnection;
        co_return co_await send(std::move(answer));
    }
    m_wantsMore = m_parser->keep_alive() && !asksToClose(m_parser->get());
    co_return true;
}

bool ControlSession::asksToGoOn() const
{
    return beast::iequals(m_parser->get()[http::field::expect], "100-continue");
}

asio::awaitable<bool> ControlSession::readBody()
{
    constexpr std::string_view goOn = "HTTP/1.1 100 Continue\r\n\r\n";
    if (asksToGoOn()) {
        const auto [failure, count] = co_await asio::async_write(m_stream, asio::buffer(goOn), asTuple);
        if (failure)
            co_return false;
    }
    const bool isKept = !m_request.isRead();
    const ErrorCode failure = co_await takeBody(isKept);
    if (failure)
        co_return co_await refuseUnreadable(failure);
    co_return true;
}

/// Piece by piece, as the parser counts the bytes of a body and none of those that frame it. An eager one would not
/// come back between the chunks.
asio::awaitable<ControlSession::ErrorCode> ControlSession::takeBody(bool isKept)
{
    m_parser->get().body().isKept = isKept;
    m_parser->eager(false);
    std::uint64_t taken = 0;
    while (!m_parser->is_done()) {
        const auto [failure, count] = co_await http::async_read_some(m_stream, m_buffer, *m_parser, asTuple);
        taken += count;
        if (failure)
            co_return failure;
        if (taken > m_server.limits().framedBytes)
            co_return http::make_error_code(http::error::buffer_overflow);
    }
    co_return ErrorCode{};
}

/// The answer goes out before a byte of the body is looked at; then the body is let pass, so that the connection can go
/// on. Whoever waits to be told to send it may do so or not, which leaves open where the next request begins.
asio::awaitable<bool> ControlSession::refuseBeforeBody(ControlAnswer refused)
{
    if (asksToGoOn())
        refused.then = ControlAnswer::Then::closeConnection;
    const bool goesOn = co_await send(std::move(refused));
    if (!goesOn)
        co_return false;
    enter(Stage::request);
    m_stream.expires_after(m_server.limits().request);
    const ErrorCode failure = co_await takeBody(false);
    if (failure)
        co_await letClientRead();
    co_return !failure;
}

asio::awaitable<bool> ControlSession::refuseUnreadable(ErrorCode failure)
{
    std::optional<ControlAnswer> answer = answerTo(failure);
    if (!answer)
        co_return false;
    answer->then = ControlAnswer::Then::closeConnection;
    co_return co_await send(std::move(*answer));
}

ControlRequest ControlSession::currentRequest() const
{
    const http::request<RequestBody> &request = m_parser->get();
    return {.method = std::string(request.method_string()),
        .target = std::string(request.target()),
        .hosts = allFields(request, "Host"),
        .origins = allFields(request, "Origin"),
        .sites = allFields(request, "Sec-Fetch-Site"),
        .tokens = allFields(request, "X-Veranox-Token"),
        .correlationID = std::string(request["X-Correlation-ID"]),
        .attempt = std::string(request["X-Veranox-Attempt"]),
        .body = ""};
}

asio::awaitable<bool> ControlSession::send(ControlAnswer answer)
{
    enter(Stage::answer);
    const bool goesOn = m_wantsMore && answer.then == ControlAnswer::Then::goOn && !m_server.isStopping();
    http::response<http::string_body> response(static_cast<http::status>(answer.status), 11);
    if (!answer.allow.empty())
        response.set(http::field::allow, answer.allow);
    forbidWebUse(response);
    fill(response, answer);
    response.prepare_payload();
    response.keep_alive(goesOn);
    if (m_request.method == "HEAD")
        response.body().clear();
    m_stream.expires_after(m_server.limits().write);
    const auto [failure, count] = co_await http::async_write(m_stream, response, asTuple);
    m_server.logAnswer(m_request, answer.status, std::chrono::steady_clock::now() - m_requestBegan);
    if (answer.then == ControlAnswer::Then::endService)
        m_server.requestShutdown();
    if (!failure && !goesOn)
        co_await letClientRead();
    co_return !failure && goesOn;
}

/// Closing at once over bytes that the client still sends would take the answer away from it: many write their whole
/// request before they read.
asio::awaitable<void> ControlSession::letClientRead()
{
    ErrorCode failure;
    m_stream.socket().shutdown(asio::ip::tcp::socket::shutdown_send, failure);
    if (m_server.isStopping())
        co_return;
    enter(Stage::request);
    m_stream.expires_after(m_server.limits().linger);
    std::array<char, 16384> rest{};
    for (std::uint64_t drained = 0; drained < m_server.limits().drainBytes;) {
        const auto [ended, count] = co_await m_stream.async_read_some(asio::buffer(rest), asTuple);
        if (ended)
            co_return;
        drained += count;
    }
}

} // namespace veranox
