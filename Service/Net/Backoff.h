#pragma once
#include <algorithm>
#include <chrono>

namespace veranox {

/// How long to wait before the next attempt: one second, then twice as long each time, up to a limit.
class Backoff {
public:
    using Seconds = std::chrono::seconds;

    explicit Backoff(Seconds most) : m_most(most) { }

    Seconds next()
    {
        const Seconds now = m_next;
        m_next = std::min(m_next * 2, m_most);
        return now;
    }
    void reset() { m_next = first; }

private:
    static constexpr Seconds first{1};

    Seconds m_most;
    Seconds m_next = first;
};

} // namespace veranox
