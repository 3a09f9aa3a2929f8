#pragma once
#include <chrono>
#include <cstdint>
#include <utility>

namespace veranox {

/// Lets through so many lines of one kind in each stretch of time, so that a client that asks nonsense without end does
/// not drown the log. Counts what it holds back.
class LogBrake {
public:
    using Clock = std::chrono::steady_clock;

    LogBrake(unsigned lines, Clock::duration stretch) : m_lines(lines), m_stretch(stretch) { }

    /// True when a line may be written at that time.
    bool admits(Clock::time_point now)
    {
        if (m_used == 0 || now - m_begin >= m_stretch) {
            m_begin = now;
            m_used = 0;
        }
        if (m_used < m_lines) {
            ++m_used;
            return true;
        }
        ++m_heldBack;
        return false;
    }

    /// How many lines were held back since the last call.
    std::uint64_t takeHeldBack() { return std::exchange(m_heldBack, 0); }

private:
    unsigned m_lines;
    Clock::duration m_stretch;
    Clock::time_point m_begin;
    unsigned m_used = 0;
    std::uint64_t m_heldBack = 0;
};

} // namespace veranox
