#pragma once
#include "Service/Net/Budget.h"
#include "Service/Net/Ledger.h"
#include "Service/Net/Relay.h"
#include "Service/Net/Route.h"
#include "Service/Net/TlsSession.h"
#include "Service/Net/TrafficThread.h"
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/steady_timer.hpp>
#include <optional>

namespace veranox {

/// What all streams of one listener have in common.
struct ConnectionOrigin {
    Route route;
    std::shared_ptr<Ledger> ledger;
    std::atomic<bool> isStopped = false;
};

/// One forwarded stream from accept to end, whatever it waits for meanwhile: it owns both sockets, TLS, the dial, its
/// deadlines and its place in all counts. Lives on one thread, until its end; from then on nothing is counted any more.
class Connection final : public std::enable_shared_from_this<Connection>,
                         public Budget::Seat,
                         private TrafficThread::Stream,
                         private Relay::Owner {
public:
    /// The thread must outlive it. From any thread.
    Connection(TrafficThread &thread, std::shared_ptr<const ConnectionOrigin> origin, StreamSocket client);
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection() override;

    /// On the connection's thread, once.
    void start();
    /// Instead of starting: there is no room for it.
    void refuse();

private:
    using Clock = std::chrono::steady_clock;
    enum class Phase { handshake, dial, relay, over };

    template <class Step> void guarded(Step step);
    void begin();
    void shakeHands();
    void dial();
    static boost::asio::awaitable<void> dialFor(std::shared_ptr<Connection> self);
    void dialled(StreamSocket target);
    void dialFailed(std::string problem);
    Relay::Parts relayParts();

    void enter(Phase phase);
    Clock::time_point deadline() const;
    CloseReason lateness() const;
    void awaitDeadline();
    void lookAtDeadline();

    void end(CloseReason reason);
    void cancelDial();
    void closeSockets(CloseReason reason);

    bool isUnwanted() const override { return m_origin->isStopped; }
    void stop() override { end(CloseReason::stopped); }
    void shed() override;
    void halfEnded() override;
    void relayEnded(CloseReason reason) override { end(reason); }
    std::shared_ptr<void> hold() override { return shared_from_this(); }

    TrafficThread &m_thread;
    TrafficThread::Load m_load;
    std::shared_ptr<const ConnectionOrigin> m_origin;
    Ledger::Entry m_entry;
    StreamSocket m_client;
    StreamSocket m_target;
    std::unique_ptr<TlsSession> m_tls;
    std::optional<Relay> m_relay;
    boost::asio::cancellation_signal m_dialCancel;
    boost::asio::steady_timer m_timer;
    Clock::time_point m_armedFor = Clock::time_point::max();
    Clock::time_point m_phaseSince = Clock::now();
    HandlerMemory m_timerMemory;
    Phase m_phase = Phase::handshake;
};

} // namespace veranox
