#include "Service/Net/Turns.h"

#include <boost/asio/post.hpp>

namespace veranox {

namespace {

/// A turn in the line takes about as long as so many short runs: so neither kind starves the other.
constexpr unsigned shortRunsPerTurn = 4;

} // namespace

void Turns::add(Taker &taker)
{
    if (taker.is_linked())
        return;
    m_line.push_back(taker);
    wakeUp();
}

void Turns::wakeUp()
{
    if (m_isAwake)
        return;
    boost::asio::post(m_context, inMemory(m_memory, [this] { run(); }));
    m_isAwake = true;
}

void Turns::run()
{
    m_isAwake = false;
    unsigned turns = 1 + m_shortRuns / shortRunsPerTurn;
    m_shortRuns = 0;
    for (; turns > 0 && !m_line.empty(); --turns) {
        Taker &next = m_line.front();
        m_line.pop_front();
        next.takeTurn();
    }
    if (!m_line.empty())
        wakeUp();
}

} // namespace veranox
