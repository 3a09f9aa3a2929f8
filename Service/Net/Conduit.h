#pragma once
#include <cstddef>
#include <memory>

namespace veranox {

/// Takes bytes out of one socket and puts them into another, without ever waiting. Both sockets must not block.
/// What it holds in between is bounded by `pieceSize`, so that a receiver who is slow slows down his sender.
class Conduit {
public:
    enum class Flow { moved, wouldBlock, ended, failed };

    /// Both directions of a connection whose two receivers are stuck stay below 64 KiB.
    static constexpr std::size_t pieceSize = 28 * 1024;

    virtual ~Conduit() = default;

    /// Takes what is there, up to one piece. Only while empty.
    virtual Flow fill(int from) = 0;
    /// Puts down as much as the receiver takes.
    virtual Flow drain(int to) = 0;
    virtual bool isEmpty() const = 0;
};

/// Makes conduits that share what they need only while bytes are on their way. Outlives them all.
class Conduits {
public:
    virtual ~Conduits() = default;
    virtual std::unique_ptr<Conduit> make() = 0;
};

/// Copies through one buffer for all; a conduit has one of its own only while its receiver lags behind.
std::unique_ptr<Conduits> copyingConduits();

/// The fastest that this system offers.
std::unique_ptr<Conduits> bestConduits();

} // namespace veranox
