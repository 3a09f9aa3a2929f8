#include "Base/Jobs/SystemClock.h"
#include <algorithm>

namespace jobs {

namespace {
// QTimer counts milliseconds in an int, about 24 days. A longer wait wakes up once a day and goes on.
constexpr std::chrono::milliseconds longestTimer = std::chrono::hours(24);
} // namespace

SystemClock::SystemClock()
{
    m_timer.setSingleShot(true);
    // A coarse timer may fire up to a twentieth early, and the rest of the wait then costs a second wake-up.
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { ringDue(); });
}

Clock::Time SystemClock::now() const noexcept
{
    return Time(std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch()));
}

void SystemClock::deadlinesChanged() noexcept
{
    if (!m_ringing && nextDeadline() != m_armedFor)
        armTimer();
}

void SystemClock::ringDue()
{
    m_ringing = true;
    const Time due = now();
    while (ringNext(due)) { }
    m_ringing = false;
    armTimer();
}

void SystemClock::armTimer() noexcept
{
    using std::chrono::milliseconds;
    m_armedFor = nextDeadline();
    if (!m_armedFor) {
        m_timer.stop();
        return;
    }
    const auto wait = std::chrono::ceil<milliseconds>(*m_armedFor - now());
    m_timer.start(std::clamp(wait, milliseconds(0), longestTimer));
}

} // namespace jobs
