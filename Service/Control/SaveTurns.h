#pragma once
#include <boost/asio/awaitable.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstddef>
#include <deque>
#include <memory>
#include <utility>

namespace veranox {

/// Lets one change of the configuration after the other go from the look at the current document to the new one on the
/// disk, in the order in which they came. For one thread.
class SaveTurns {
public:
    /// `mostWaiting`: beyond that a change is refused.
    explicit SaveTurns(std::size_t mostWaiting) : m_mostWaiting(mostWaiting) { }
    SaveTurns(const SaveTurns &) = delete;
    SaveTurns &operator=(const SaveTurns &) = delete;

    /// One's turn, until it goes.
    class Turn {
    public:
        explicit Turn(SaveTurns &turns) : m_turns(&turns) { }
        Turn(Turn &&other) noexcept : m_turns(std::exchange(other.m_turns, nullptr)) { }
        Turn &operator=(Turn &&) = delete;
        ~Turn()
        {
            if (m_turns)
                m_turns->pass();
        }

    private:
        SaveTurns *m_turns;
    };

    /// Waits for the turn. Throws Refusal when too many wait already.
    boost::asio::awaitable<Turn> take();

private:
    /// Rings when its turn has come.
    using Bell = boost::asio::steady_timer;
    void pass();

    std::size_t m_mostWaiting;
    std::deque<std::weak_ptr<Bell>> m_waiting;
    bool m_isTaken = false;
};

} // namespace veranox
