#pragma once
#include "Service/Net/Conduit.h"
#include "Service/Net/HandlerMemory.h"
#include "Service/Net/StreamSocket.h"
#include "Service/Net/Turns.h"
#include <chrono>
#include <cstdint>
#include <memory>

namespace veranox {

/// One direction of a stream. What moves little goes at once; what moves much takes turns with the others of its
/// thread.
class RelayHalf final : private Turns::Taker {
public:
    enum class Failure { source, sink, inside };

    class Owner {
    public:
        virtual ~Owner() = default;
        /// The source has ended in order, and the sink knows. At most once.
        virtual void ended(RelayHalf &half) = 0;
        /// The direction is lost. At most once.
        virtual void failed(RelayHalf &half, Failure failure) = 0;
        virtual std::shared_ptr<void> hold() = 0;
    };

    /// All but the conduit must outlive it.
    RelayHalf(Owner &owner, Turns &turns, StreamSocket &source, StreamSocket &sink, std::unique_ptr<Conduit> conduit);
    RelayHalf(const RelayHalf &) = delete;
    RelayHalf &operator=(const RelayHalf &) = delete;
    ~RelayHalf() override = default;

    void start();
    /// It counts as over, and the owner hears nothing more.
    void stop();

    bool isOver() const { return m_isOver; }
    std::uint64_t bytes() const { return m_bytes; }
    std::chrono::steady_clock::time_point lastMoved() const { return m_lastMoved; }

private:
    using Wait = boost::asio::socket_base::wait_type;

    void takeTurn() override;
    void carry(std::size_t most);
    Flow moveOnce();
    void finish();
    void waitFor(Flow flow);
    void becameReady();
    void watchSource();
    void fail(Failure failure);

    Owner &m_owner;
    Turns &m_turns;
    StreamSocket &m_source;
    StreamSocket &m_sink;
    std::unique_ptr<Conduit> m_conduit;
    std::uint64_t m_bytes = 0; // put down
    std::chrono::steady_clock::time_point m_lastMoved = std::chrono::steady_clock::now();
    HandlerMemory m_waitMemory;
    HandlerMemory m_watchMemory;
    bool m_movesMuch = false;
    bool m_isDraining = false; // the last step was one towards the sink
    bool m_sourceHasEnded = false;
    bool m_isWatched = false;
    bool m_isOver = false;
};

} // namespace veranox
