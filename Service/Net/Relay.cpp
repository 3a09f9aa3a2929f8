#include "Service/Net/Relay.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/experimental/awaitable_operators.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <sys/socket.h>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

/// Pieces that one direction may move before the others have their turn.
constexpr unsigned piecesPerTurn = 16;

void prepare(StreamSocket &socket)
{
    boost::system::error_code ignored;
    socket.native_non_blocking(true, ignored);
    socket.set_option(asio::socket_base::keep_alive(true), ignored);
}

/// The system wakes those who wait for an error also when both directions have ended in order.
bool hasFailed(int socket)
{
    int pending = 0;
    socklen_t size = sizeof pending;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &pending, &size) != 0 || pending != 0;
}

} // namespace

Relay::Relay(StreamSocket one, StreamSocket other, Conduits &conduits)
    : m_sockets{std::move(one), std::move(other)},
      m_conduits{conduits.make(), conduits.make()}
{
    for (StreamSocket &socket : m_sockets)
        prepare(socket);
}

asio::awaitable<void> Relay::run(std::shared_ptr<Relay> self)
{
    using namespace asio::experimental::awaitable_operators;
    const auto executor = co_await asio::this_coro::executor;
    for (std::size_t side = 0; side < self->m_sockets.size(); ++side)
        asio::co_spawn(executor, watch(self, side), asio::detached);
    co_await (self->carry(0) && self->carry(1));
    boost::system::error_code ignored;
    for (StreamSocket &socket : self->m_sockets)
        socket.close(ignored);
}

void Relay::cut()
{
    for (StreamSocket &socket : m_sockets)
        if (socket.is_open())
            closeWithReset(socket);
}

/// One direction, until its end or the end of all.
asio::awaitable<void> Relay::carry(std::size_t from)
{
    StreamSocket &source = m_sockets[from];
    Conduit &conduit = *m_conduits[from];
    for (unsigned pieces = 1;; ++pieces) {
        const Conduit::Flow flow = source.is_open() ? conduit.fill(source.native_handle()) : Conduit::Flow::failed;
        if (flow == Conduit::Flow::wouldBlock) {
            pieces = 0;
            co_await source.async_wait(asio::socket_base::wait_read, asTuple);
            continue;
        }
        if (flow != Conduit::Flow::moved) {
            if (flow == Conduit::Flow::failed)
                cut();
            break;
        }
        const bool isDelivered = co_await drain(from);
        if (!isDelivered)
            co_return;
        if (pieces % piecesPerTurn == 0)
            co_await asio::post(asio::use_awaitable);
    }
    boost::system::error_code ignored;
    m_sockets[1 - from].shutdown(asio::socket_base::shutdown_send, ignored);
}

/// False when the connection is lost.
asio::awaitable<bool> Relay::drain(std::size_t from)
{
    StreamSocket &sink = m_sockets[1 - from];
    Conduit &conduit = *m_conduits[from];
    while (!conduit.isEmpty()) {
        const Conduit::Flow flow = sink.is_open() ? conduit.drain(sink.native_handle()) : Conduit::Flow::failed;
        if (flow == Conduit::Flow::failed) {
            cut();
            co_return false;
        }
        if (flow == Conduit::Flow::wouldBlock)
            co_await sink.async_wait(asio::socket_base::wait_write, asTuple);
    }
    co_return true;
}

/// Notices a reset also while nothing is read from that side, as its own receiver is stuck.
asio::awaitable<void> Relay::watch(std::shared_ptr<Relay> self, std::size_t side)
{
    StreamSocket &socket = self->m_sockets[side];
    const auto [failure] = co_await socket.async_wait(asio::socket_base::wait_error, asTuple);
    if (failure || !socket.is_open())
        co_return;
    if (hasFailed(socket.native_handle()))
        self->cut();
}

} // namespace veranox
