#include "Service/Net/Connection.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <string>

namespace veranox {

namespace asio = boost::asio;

namespace {

void prepare(StreamSocket &socket)
{
    boost::system::error_code ignored;
    socket.native_non_blocking(true, ignored);
    socket.set_option(asio::socket_base::keep_alive(true), ignored);
}

std::string lateDial(std::chrono::milliseconds limit)
{
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(limit).count();
    return "The target did not answer within " + std::to_string(seconds) + " s.";
}

} // namespace

Connection::Connection(TrafficThread &thread, std::shared_ptr<const ConnectionOrigin> origin, StreamSocket client)
    : m_thread(thread),
      m_load(thread),
      m_origin(std::move(origin)),
      m_entry(m_origin->ledger),
      m_client(std::move(client)),
      m_target(thread.executor()),
      m_timer(thread.executor())
{
}

Connection::~Connection()
{
    closeSockets(CloseReason::failed); // unless they are closed by now
    leave();
}

/// Whatever goes wrong within a step, the stream ends as every other does.
template <class Step> void Connection::guarded(Step step)
try {
    if (m_phase != Phase::over)
        step();
} catch (const std::exception &) {
    end(CloseReason::failed);
}

void Connection::start()
{
    m_thread.add(*this);
    guarded([this] { begin(); });
}

void Connection::refuse()
{
    m_entry.close(CloseReason::refused, 0, 0); // first: who sees the reset finds it counted
    closeWithReset(m_client);
}

void Connection::begin()
{
    if (m_origin->isStopped)
        return end(CloseReason::stopped);
    const Route &route = m_origin->route;
    if (route.turnsAway && *route.turnsAway)
        return end(CloseReason::turnedAway);
    prepare(m_client);
    if (!route.tls)
        return dial();
    m_tls = std::make_unique<TlsSession>(*route.tls, m_client.native_handle());
    enter(Phase::handshake);
    shakeHands();
}

void Connection::shakeHands()
{
    const Flow flow = m_tls->shakeHands();
    if (flow == Flow::moved)
        return dial();
    if (flow != Flow::awaitsRead && flow != Flow::awaitsWrite)
        return end(CloseReason::handshakeFailed);
    m_client.async_wait(flow == Flow::awaitsRead ? asio::socket_base::wait_read : asio::socket_base::wait_write,
        [self = shared_from_this()](const boost::system::error_code &) { self->guarded([&] { self->shakeHands(); }); });
}

void Connection::dial()
{
    enter(Phase::dial);
    asio::co_spawn(m_thread.executor(), dialFor(shared_from_this()),
        asio::bind_cancellation_slot(m_dialCancel.slot(), [self = shared_from_this()](const std::exception_ptr &) {
            self->guarded([&] {
                if (self->m_phase == Phase::dial)
                    self->end(CloseReason::failed);
            });
        }));
}

asio::awaitable<void> Connection::dialFor(std::shared_ptr<Connection> self)
{
    std::string problem;
    StreamSocket target(self->m_thread.executor());
    try {
        target = co_await self->m_origin->route.dial();
    } catch (const std::exception &failure) {
        problem = failure.what();
    }
    self->guarded([&] {
        if (problem.empty())
            self->dialled(std::move(target));
        else
            self->dialFailed(std::move(problem));
    });
}

void Connection::dialFailed(std::string problem)
{
    m_origin->ledger->attempted(std::move(problem));
    end(CloseReason::dialFailed);
}

void Connection::dialled(StreamSocket target)
{
    m_target = std::move(target);
    prepare(m_target);
    m_origin->ledger->attempted("");
    Relay::Owner &owner = *this;
    m_relay.emplace(owner, m_thread.turns(), relayParts());
    settle();
    enter(Phase::relay);
    m_relay->start();
}

Relay::Parts Connection::relayParts()
{
    const int client = m_client.native_handle();
    const int target = m_target.native_handle();
    Conduits &conduits = m_thread.conduits();
    if (m_tls)
        return {m_client, m_target, conduits.makeDecrypting(*m_tls, target), conduits.makeEncrypting(target, *m_tls)};
    return {m_client, m_target, conduits.make(client, target), conduits.make(target, client)};
}

void Connection::halfEnded()
{
    beginToWait();
    guarded([this] { awaitDeadline(); });
}

void Connection::enter(Phase phase)
{
    m_phase = phase;
    m_phaseSince = Clock::now();
    awaitDeadline();
}

Connection::Clock::time_point Connection::deadline() const
{
    const ConnectionLimits &limits = m_origin->route.limits;
    switch (m_phase) {
    case Phase::handshake:
        return m_phaseSince + limits.handshake;
    case Phase::dial:
        return m_phaseSince + limits.dial;
    case Phase::relay:
        return m_relay->lastMoved() + (m_relay->isHalfClosed() ? limits.halfClosed : limits.idle);
    case Phase::over:
        break;
    }
    return Clock::time_point::max();
}

CloseReason Connection::lateness() const
{
    if (m_phase == Phase::handshake)
        return CloseReason::handshakeTookTooLong;
    if (m_phase == Phase::dial)
        return CloseReason::dialTookTooLong;
    return m_relay->isHalfClosed() ? CloseReason::halfClosedTooLong : CloseReason::idleTooLong;
}

/// The timer never runs out later than the deadline. When it runs out too soon, as bytes have moved since, it is set
/// anew: so moving them costs nothing.
void Connection::awaitDeadline()
{
    const Clock::time_point next = deadline();
    if (next >= m_armedFor)
        return;
    m_armedFor = next;
    m_timer.expires_at(next);
    m_timer.async_wait(inMemory(m_timerMemory, [self = shared_from_this()](const boost::system::error_code &failure) {
        if (!failure)
            self->guarded([&] { self->lookAtDeadline(); });
    }));
}

void Connection::lookAtDeadline()
{
    if (deadline() <= Clock::now()) {
        if (m_phase == Phase::dial)
            m_origin->ledger->attempted(lateDial(m_origin->route.limits.dial));
        return end(lateness());
    }
    m_armedFor = Clock::time_point::max();
    awaitDeadline();
}

/// Another thread may call this, and holds the budget.
void Connection::shed()
{
    if (const auto self = weak_from_this().lock())
        asio::post(m_thread.context(), [self] { self->end(CloseReason::shed); });
}

/// The only end there is: from any phase, at once.
void Connection::end(CloseReason reason)
{
    if (m_phase == Phase::over)
        return;
    const auto self = shared_from_this(); // as whoever held it may let go meanwhile
    const bool isDialling = m_phase == Phase::dial;
    m_phase = Phase::over;
    if (m_relay)
        m_relay->stop();
    // Before the sockets: who sees the end finds it counted.
    TrafficThread::Hook::unlink();
    leave();
    m_entry.close(reason, m_relay ? m_relay->bytesToTarget() : 0, m_relay ? m_relay->bytesToClient() : 0);
    closeSockets(reason);
    m_timer.cancel();
    if (isDialling)
        cancelDial();
}

/// Whoever dials may go on all the same: nobody waits for him any more.
void Connection::cancelDial()
try {
    m_dialCancel.emit(asio::cancellation_type::terminal);
} catch (const std::exception &) {
}

/// A stream that is cut must not look whole: neither side may take it for an end in order.
void Connection::closeSockets(CloseReason reason)
{
    boost::system::error_code ignored;
    for (StreamSocket *socket : {&m_client, &m_target}) {
        if (!socket->is_open())
            continue;
        if (reason == CloseReason::ended)
            socket->close(ignored);
        else
            closeWithReset(*socket);
    }
}

} // namespace veranox
