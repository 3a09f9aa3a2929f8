#include "Service/Net/Listener.h"

#include <boost/asio/post.hpp>
#include <netinet/in.h>
#include <netinet/tcp.h>

namespace veranox {

namespace asio = boost::asio;

namespace {

/// When the system has no descriptor left, asking again at once would only burn time.
constexpr std::chrono::milliseconds pauseAfterFailedAccept{100};

/// A crowd at the door must not keep the thread from its streams.
constexpr unsigned takenAtOnce = 16;

/// Does nothing to a socket of another family.
void sendAtOnce(StreamSocket &socket)
{
    const int on = 1;
    ::setsockopt(socket.native_handle(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

} // namespace

Listener::Listener(Surroundings surroundings, StreamAcceptor acceptor, Route route, Ledger::Report report)
    : m_around(std::move(surroundings)),
      m_origin(std::make_shared<ConnectionOrigin>()),
      m_share(m_around.budget.openShare()),
      m_acceptor(std::move(acceptor)),
      m_pause(m_acceptor.get_executor())
{
    m_origin->route = std::move(route);
    m_origin->ledger = std::make_shared<Ledger>(m_around.control, std::move(report));
}

void Listener::start()
{
    m_acceptor.non_blocking(true);
    awaitConnections();
}

void Listener::stop()
{
    if (m_origin->isStopped.exchange(true))
        return;
    m_origin->ledger->silence();
    {
        const std::scoped_lock lock(m_mutex);
        boost::system::error_code ignored;
        m_acceptor.close(ignored);
        m_pause.cancel();
    }
    m_around.budget.closeShare(*m_share);
    m_around.pool.stopUnwanted();
}

void Listener::awaitConnections()
{
    const std::scoped_lock lock(m_mutex);
    if (m_origin->isStopped)
        return;
    m_acceptor.async_wait(asio::socket_base::wait_read,
        inMemory(m_waitMemory,
            [self = shared_from_this()](const boost::system::error_code &failure) { self->takeConnections(failure); }));
}

void Listener::takeConnections(const boost::system::error_code &failure)
{
    boost::system::error_code problem = failure;
    try {
        for (unsigned taken = 0; !problem && taken < takenAtOnce; ++taken)
            problem = takeOne();
    } catch (const std::exception &) {
        problem = asio::error::no_memory; // the connection that it was for is closed by now
    }
    if (!problem || problem == asio::error::would_block || problem == asio::error::connection_aborted)
        awaitConnections();
    else
        pause();
}

boost::system::error_code Listener::takeOne()
{
    TrafficThread &thread = m_around.pool.leastLoaded();
    StreamSocket client(thread.executor());
    boost::system::error_code failure;
    {
        const std::scoped_lock lock(m_mutex);
        if (m_origin->isStopped)
            return asio::error::operation_aborted;
        m_acceptor.accept(client, failure);
    }
    if (!failure)
        handOver(thread, std::move(client));
    return failure;
}

/// Nobody who came is left waiting: who finds no room learns so at once.
void Listener::handOver(TrafficThread &thread, StreamSocket client)
{
    sendAtOnce(client);
    const auto connection = std::make_shared<Connection>(thread, m_origin, std::move(client));
    if (m_around.budget.admit(m_share, *connection))
        asio::post(thread.context(), [connection] { connection->start(); });
    else
        connection->refuse();
}

void Listener::pause()
{
    const std::scoped_lock lock(m_mutex);
    if (m_origin->isStopped)
        return;
    m_pause.expires_after(pauseAfterFailedAccept);
    m_pause.async_wait(inMemory(
        m_pauseMemory, [self = shared_from_this()](const boost::system::error_code &) { self->awaitConnections(); }));
}

} // namespace veranox
