#include "Service/Net/TlsEnd.h"

#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/experimental/awaitable_operators.hpp>
#include <boost/asio/local/connect_pair.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>

namespace veranox {

namespace asio = boost::asio;
using LocalSocket = asio::local::stream_protocol::socket;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
constexpr std::chrono::seconds handshakeTime{10};
constexpr std::chrono::seconds farewellTime{2};
constexpr std::size_t pieceSize = 16 * 1024; // what one TLS record holds

/// The two sides of one connection.
struct TlsPair {
    TlsPair(StreamSocket client, std::shared_ptr<asio::ssl::context> usedContext)
        : context(std::move(usedContext)),
          secure(std::move(client), *context),
          plain(secure.get_executor())
    {
    }
    void close()
    {
        boost::system::error_code ignored;
        secure.next_layer().close(ignored);
        plain.close(ignored);
    }

    std::shared_ptr<asio::ssl::context> context;
    asio::ssl::stream<StreamSocket> secure;
    LocalSocket plain;
};

asio::awaitable<void> decrypt(std::shared_ptr<TlsPair> pair)
{
    std::array<char, pieceSize> piece{};
    for (;;) {
        const auto [unread, count] = co_await pair->secure.async_read_some(asio::buffer(piece), asTuple);
        if (unread) {
            boost::system::error_code ignored;
            pair->plain.shutdown(asio::socket_base::shutdown_send, ignored);
            co_return;
        }
        const auto [unsent, sent] = co_await asio::async_write(pair->plain, asio::buffer(piece, count), asTuple);
        if (unsent)
            break;
    }
    pair->close();
}

asio::awaitable<void> encrypt(std::shared_ptr<TlsPair> pair)
{
    using namespace asio::experimental::awaitable_operators;
    std::array<char, pieceSize> piece{};
    for (;;) {
        const auto [unread, count] = co_await pair->plain.async_read_some(asio::buffer(piece), asTuple);
        if (unread)
            break;
        const auto [unsent, sent] = co_await asio::async_write(pair->secure, asio::buffer(piece, count), asTuple);
        if (unsent)
            break;
    }
    asio::steady_timer timer(pair->secure.get_executor(), farewellTime);
    co_await (pair->secure.async_shutdown(asTuple) || timer.async_wait(asTuple));
    pair->close();
}

} // namespace

asio::awaitable<StreamSocket> endTls(StreamSocket client, std::shared_ptr<asio::ssl::context> context)
{
    using namespace asio::experimental::awaitable_operators;
    const auto executor = co_await asio::this_coro::executor;
    const auto pair = std::make_shared<TlsPair>(std::move(client), std::move(context));
    asio::steady_timer timer(executor, handshakeTime);
    const auto first =
        co_await (pair->secure.async_handshake(asio::ssl::stream_base::server, asTuple) || timer.async_wait(asTuple));
    const bool isSecure = first.index() == 0 && !std::get<0>(std::get<0>(first));
    LocalSocket inner(executor);
    if (!isSecure) {
        pair->close();
        co_return StreamSocket(std::move(inner));
    }
    asio::local::connect_pair(pair->plain, inner);
    asio::co_spawn(executor, decrypt(pair), asio::detached);
    asio::co_spawn(executor, encrypt(pair), asio::detached);
    co_return StreamSocket(std::move(inner));
}

} // namespace veranox
