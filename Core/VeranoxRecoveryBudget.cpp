#include "Core/VeranoxRecoveryBudget.h"

using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration window = 60s; // an attempt further back says nothing about this crash
constexpr int limit = 3;

} // namespace

std::optional<jobs::Clock::Duration> VeranoxRecoveryBudget::take()
{
    const auto now = m_clock.now();
    if (m_lastTakenAt && now - *m_lastTakenAt > window)
        m_taken = 0;
    if (m_taken >= limit)
        return std::nullopt;
    m_lastTakenAt = now;
    return 1s * (1 << m_taken++);
}

void VeranoxRecoveryBudget::refill()
{
    m_taken = 0;
    m_lastTakenAt.reset();
}
