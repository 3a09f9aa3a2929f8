#include "Service/Nodes/Lab/LabHostServices.h"

#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/error.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <memory>

namespace veranox {

namespace asio = boost::asio;
namespace http = boost::beast::http;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
constexpr std::size_t pieceSize = 16 * 1024;

http::response<http::string_body> page(const http::request<http::empty_body> &request)
{
    const bool isRead = request.method() == http::verb::get || request.method() == http::verb::head;
    http::response<http::string_body> response(isRead ? http::status::ok : http::status::method_not_allowed, 11);
    response.set(http::field::content_type, "text/html; charset=utf-8");
    response.set(http::field::server, "Veranox lab");
    response.body() = "<!doctype html>\n<html lang=\"en\">\n<head><title>Lab site</title></head>\n"
                      "<body><h1>It works</h1><p>This page comes from a host of the lab network.</p></body>\n</html>\n";
    response.prepare_payload();
    response.keep_alive(request.keep_alive());
    if (request.method() == http::verb::head)
        response.body().clear();
    return response;
}

} // namespace

asio::awaitable<void> serveSite(LabConnection connection)
{
    boost::beast::flat_buffer buffer(pieceSize);
    for (bool goesOn = true; goesOn;) {
        http::request_parser<http::empty_body> parser;
        parser.header_limit(static_cast<std::uint32_t>(pieceSize));
        const auto [unread, taken] = co_await http::async_read(*connection, buffer, parser, asTuple);
        if (unread)
            co_return;
        const http::response<http::string_body> response = page(parser.get());
        const auto [unsent, sent] = co_await http::async_write(*connection, response, asTuple);
        goesOn = !unsent && response.keep_alive();
    }
    boost::system::error_code ignored;
    connection->shutdown(asio::socket_base::shutdown_send, ignored);
}

asio::awaitable<void> serveEcho(LabConnection connection)
{
    const auto buffer = std::make_unique<std::array<char, pieceSize>>();
    for (;;) {
        const auto [unread, count] = co_await connection->async_read_some(asio::buffer(*buffer), asTuple);
        if (unread)
            co_return;
        const auto [unsent, sent] = co_await asio::async_write(*connection, asio::buffer(*buffer, count), asTuple);
        if (unsent)
            co_return;
    }
}

asio::awaitable<void> serveBlackhole(LabConnection connection)
{
    const auto buffer = std::make_unique<std::array<char, pieceSize>>();
    for (;;) {
        const auto [unread, count] = co_await connection->async_read_some(asio::buffer(*buffer), asTuple);
        if (unread)
            co_return;
    }
}

} // namespace veranox
