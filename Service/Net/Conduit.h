#pragma once
#include "Service/Net/Flow.h"
#include <cstddef>
#include <memory>

namespace veranox {

class TlsSession;

/// Takes bytes out of one end of a stream and puts them into another, without ever waiting. What it holds in between is
/// bounded by `pieceSize`, so that a receiver who is slow slows down his sender.
class Conduit {
public:
    /// Both directions of a connection whose two receivers are stuck stay below 64 KiB.
    static constexpr std::size_t pieceSize = 28 * 1024;

    virtual ~Conduit() = default;

    /// Takes what is there, up to one piece. Only while empty; whoever fills drains before anybody else fills.
    virtual Flow fill() = 0;
    /// Puts down as much as the receiver takes.
    virtual Flow drain() = 0;
    /// Lets the receiver know that nothing more comes: `ended` once it does.
    virtual Flow finish() = 0;
    virtual std::size_t held() const = 0;
};

/// Makes conduits between sockets that do not block, and holds what they share. Outlives them all; one for each thread.
class Conduits {
public:
    virtual ~Conduits() = default;
    virtual std::unique_ptr<Conduit> make(int from, int to) = 0;
    /// The sessions must outlive their conduits.
    virtual std::unique_ptr<Conduit> makeDecrypting(TlsSession &from, int to) = 0;
    virtual std::unique_ptr<Conduit> makeEncrypting(int from, TlsSession &to) = 0;
};

/// What a process may spend on pipes: each is asked for before it is made, and given back once it is closed.
class PipeAllowance {
public:
    virtual ~PipeAllowance() = default;
    /// False when there is none left. From any thread.
    virtual bool takePipe() = 0;
    virtual void givePipeBack() = 0;
};

/// Copies through one buffer for all; a conduit has one of its own only while its receiver lags behind.
std::unique_ptr<Conduits> copyingConduits();

/// The fastest that this system offers. Where pipes run short it copies. The allowance must outlive it.
std::unique_ptr<Conduits> bestConduits(PipeAllowance &allowance);

} // namespace veranox
