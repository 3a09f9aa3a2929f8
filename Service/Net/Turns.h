#pragma once
#include "Service/Net/HandlerMemory.h"
#include <boost/asio/io_context.hpp>
#include <boost/intrusive/list.hpp>

namespace veranox {

/// The line in which those of one thread stand who have much to move. Between any two of their turns, whoever has
/// little to move and has just become ready goes first. All calls on that thread.
class Turns {
public:
    using Hook = boost::intrusive::list_base_hook<boost::intrusive::link_mode<boost::intrusive::auto_unlink>>;

    /// One who waits for a turn. Leaves the line by itself when it dies.
    class Taker : public Hook {
    public:
        virtual ~Taker() = default;
        /// Moves a bounded number of bytes. Must not throw.
        virtual void takeTurn() = 0;
    };

    explicit Turns(boost::asio::io_context &context) : m_context(context) { }

    /// To the end of the line. Does nothing for one who stands in it.
    void add(Taker &taker);
    /// Somebody moved a little without having stood in line.
    void countShortRun() { ++m_shortRuns; }

private:
    void run();
    void wakeUp();

    boost::asio::io_context &m_context;
    HandlerMemory m_memory;
    boost::intrusive::list<Taker, boost::intrusive::constant_time_size<false>> m_line;
    unsigned m_shortRuns = 0; // since the last turn
    bool m_isAwake = false;
};

} // namespace veranox
