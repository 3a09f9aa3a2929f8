#pragma once
#include "Service/Net/Conduit.h"
#include "Service/Net/StreamSocket.h"
#include <array>
#include <boost/asio/awaitable.hpp>
#include <cstddef>
#include <memory>

namespace veranox {

/// Joins two connected sockets until both directions have ended. The end of one direction is passed on while the other
/// goes on; a reset of one side becomes a reset of the other. Slow receivers hold up nobody but their own senders.
class Relay : public std::enable_shared_from_this<Relay> {
public:
    /// The conduits must outlive it.
    Relay(StreamSocket one, StreamSocket other, Conduits &conduits);
    Relay(const Relay &) = delete;
    Relay &operator=(const Relay &) = delete;
    ~Relay() = default;

    /// Returns once nothing is left to carry. To be called once; holds itself alive.
    static boost::asio::awaitable<void> run(std::shared_ptr<Relay> self);

    /// Ends both connections with a reset.
    void cut();

private:
    boost::asio::awaitable<void> carry(std::size_t from);
    boost::asio::awaitable<bool> drain(std::size_t from);
    static boost::asio::awaitable<void> watch(std::shared_ptr<Relay> self, std::size_t side);

    std::array<StreamSocket, 2> m_sockets;
    std::array<std::unique_ptr<Conduit>, 2> m_conduits;
};

} // namespace veranox
