#include "Service/Net/RelayHalf.h"

#include <sys/socket.h>

namespace veranox {

namespace asio = boost::asio;

namespace {

/// What one direction may move before the others have their turn.
constexpr std::size_t bytesPerTurn = std::size_t{64} * 1024;

/// What it may move as soon as it becomes ready, without having stood in line.
constexpr std::size_t bytesAtOnce = std::size_t{16} * 1024;

/// The system wakes those who wait for an error also when both directions have ended in order.
bool hasFailed(int socket)
{
    int pending = 0;
    socklen_t size = sizeof pending;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &pending, &size) != 0 || pending != 0;
}

} // namespace

RelayHalf::RelayHalf(
    Owner &owner, Turns &turns, StreamSocket &source, StreamSocket &sink, std::unique_ptr<Conduit> conduit)
    : m_owner(owner),
      m_turns(turns),
      m_source(source),
      m_sink(sink),
      m_conduit(std::move(conduit))
{
}

void RelayHalf::start()
{
    waitFor(Flow::awaitsRead);
}

void RelayHalf::stop()
{
    m_isOver = true;
    unlink();
}

void RelayHalf::becameReady()
{
    if (m_isOver)
        return;
    if (m_movesMuch)
        return m_turns.add(*this);
    m_turns.countShortRun();
    carry(bytesAtOnce);
}

void RelayHalf::takeTurn()
{
    carry(bytesPerTurn);
}

/// Moves until nothing moves any more, or as much as it may.
void RelayHalf::carry(std::size_t most)
try {
    const std::uint64_t before = m_bytes;
    m_lastMoved = std::chrono::steady_clock::now();
    for (;;) {
        const Flow flow = moveOnce();
        m_movesMuch = m_bytes - before >= bytesAtOnce;
        if (flow == Flow::ended)
            return finish();
        if (flow == Flow::failed)
            return fail(m_isDraining ? Failure::sink : Failure::source);
        if (flow != Flow::moved)
            return waitFor(flow);
        if (m_bytes - before >= most && m_conduit->held() == 0)
            return m_turns.add(*this);
    }
} catch (const std::exception &) {
    fail(Failure::inside);
}

/// One step: towards the sink while anything is held, otherwise out of the source.
Flow RelayHalf::moveOnce()
{
    const std::size_t held = m_conduit->held();
    m_isDraining = held > 0 || m_sourceHasEnded;
    if (m_sourceHasEnded)
        return m_conduit->finish();
    if (held == 0) {
        const Flow flow = m_conduit->fill();
        m_sourceHasEnded = flow == Flow::ended;
        return m_sourceHasEnded ? Flow::moved : flow;
    }
    const Flow flow = m_conduit->drain();
    m_bytes += held - m_conduit->held();
    return flow;
}

void RelayHalf::finish()
{
    m_isOver = true;
    watchSource();
    m_owner.ended(*this);
}

void RelayHalf::fail(Failure failure)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_owner.failed(*this, failure);
}

void RelayHalf::waitFor(Flow flow)
{
    StreamSocket &socket = m_isDraining ? m_sink : m_source;
    if (m_isDraining)
        watchSource();
    const auto resume = [this, held = m_owner.hold()](const boost::system::error_code &) { becameReady(); };
    socket.async_wait(flow == Flow::awaitsWrite ? asio::socket_base::wait_write : asio::socket_base::wait_read,
        inMemory(m_waitMemory, resume));
}

/// Notices a reset also while nothing is read from that side: its receiver is stuck, or it has ended its half.
void RelayHalf::watchSource()
{
    if (m_isWatched)
        return;
    m_isWatched = true;
    m_source.async_wait(asio::socket_base::wait_error,
        inMemory(m_watchMemory, [this, held = m_owner.hold()](const boost::system::error_code &failure) {
            if (!failure && m_source.is_open() && hasFailed(m_source.native_handle()))
                m_owner.failed(*this, Failure::source);
        }));
}

} // namespace veranox
