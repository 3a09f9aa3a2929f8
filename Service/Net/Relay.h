#pragma once
#include "Service/Net/CloseReason.h"
#include "Service/Net/RelayHalf.h"

namespace veranox {

/// Joins the two ends of a stream until both directions have ended. The end of one direction is passed on while the
/// other goes on. Slow receivers hold up nobody but their own senders. Belongs to one thread, and allocates nothing
/// while bytes move, but for what a receiver lags behind when pipes are short.
class Relay final : private RelayHalf::Owner {
public:
    /// Whoever closes the sockets, which the relay leaves alone.
    class Owner {
    public:
        virtual ~Owner() = default;
        /// One direction has ended, the other goes on.
        virtual void halfEnded() = 0;
        /// Nothing is left to carry, or it cannot be carried. At most once.
        virtual void relayEnded(CloseReason reason) = 0;
        /// Keeps the owner, and so the relay, alive for as long as an operation waits.
        virtual std::shared_ptr<void> hold() = 0;
    };

    /// Two sockets that do not block, and what carries between them.
    struct Parts {
        StreamSocket &client;
        StreamSocket &target;
        std::unique_ptr<Conduit> toTarget;
        std::unique_ptr<Conduit> toClient;
    };

    /// Owner, turns and sockets must outlive it.
    Relay(Owner &owner, Turns &turns, Parts parts);
    Relay(const Relay &) = delete;
    Relay &operator=(const Relay &) = delete;
    ~Relay() override = default;

    void start();
    /// Nothing moves any more, and the owner hears nothing. Harmless when repeated.
    void stop();

    bool isHalfClosed() const { return m_toTarget.isOver() != m_toClient.isOver(); }
    /// When bytes moved last, or a direction ended.
    std::chrono::steady_clock::time_point lastMoved() const;
    std::uint64_t bytesToTarget() const { return m_toTarget.bytes(); }
    std::uint64_t bytesToClient() const { return m_toClient.bytes(); }

private:
    void ended(RelayHalf &half) override;
    void failed(RelayHalf &half, RelayHalf::Failure failure) override;
    std::shared_ptr<void> hold() override { return m_owner.hold(); }

    Owner &m_owner;
    RelayHalf m_toTarget;
    RelayHalf m_toClient;
};

} // namespace veranox
