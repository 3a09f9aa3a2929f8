#pragma once
#include "Service/Net/Connection.h"
#include "Service/Net/TrafficPool.h"
#include <boost/asio/basic_socket_acceptor.hpp>
#include <mutex>

namespace veranox {

/// Listens for streams of any family.
using StreamAcceptor = boost::asio::basic_socket_acceptor<boost::asio::generic::stream_protocol>;

/// Takes connections at one address and forwards each, on whichever thread has the least to do. Lives until stop().
class Listener : public std::enable_shared_from_this<Listener> {
public:
    struct Surroundings {
        TrafficPool &pool;
        Budget &budget;
        boost::asio::any_io_executor control; // of one thread: start and stop are called there, reports made there
    };

    /// The acceptor listens already, on a thread of the pool. Pool and budget must outlive the connections.
    Listener(Surroundings surroundings, StreamAcceptor acceptor, Route route, Ledger::Report report);
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;
    ~Listener() = default;

    void start();
    /// At once nothing is taken or reported any more; every connection gets a reset soon, and within 100 ms. Harmless
    /// when repeated.
    void stop();

    std::int64_t activeConns() const { return m_origin->ledger->active(); }
    Tally tally() const { return m_origin->ledger->tally(); }

private:
    void awaitConnections();
    void takeConnections(const boost::system::error_code &failure);
    boost::system::error_code takeOne();
    void handOver(TrafficThread &thread, StreamSocket client);
    void pause();

    Surroundings m_around;
    std::shared_ptr<ConnectionOrigin> m_origin;
    std::shared_ptr<Budget::Share> m_share;
    std::mutex m_mutex; // control closes the acceptor while its own thread uses it
    StreamAcceptor m_acceptor;
    boost::asio::steady_timer m_pause;
    HandlerMemory m_waitMemory;
    HandlerMemory m_pauseMemory;
};

} // namespace veranox
