#include "Core/Jobs/Clock.h"
#include <QThread>

namespace jobs {

Clock::~Clock()
{
    Q_ASSERT_X(m_alarms.empty(), "Clock", "an alarm outlives its clock");
}

void Clock::arm(Alarm &alarm, Time at)
{
    if (alarm.m_clock)
        alarm.m_clock->disarm(alarm);
    alarm.m_clock = this;
    alarm.m_at = at;
    alarm.m_order = m_count++;
    m_alarms.insert(&alarm);
    deadlinesChanged();
}

void Clock::disarm(Alarm &alarm) noexcept
{
    if (alarm.m_clock != this)
        return;
    m_alarms.erase(&alarm);
    alarm.m_clock = nullptr;
    deadlinesChanged();
}

std::optional<Clock::Time> Clock::nextDeadline() const
{
    if (m_alarms.empty())
        return std::nullopt;
    return (*m_alarms.begin())->m_at;
}

bool Clock::ringNext(Time upTo)
{
    if (m_alarms.empty() || (*m_alarms.begin())->m_at > upTo)
        return false;
    Alarm *alarm = *m_alarms.begin();
    m_alarms.erase(m_alarms.begin());
    alarm->m_clock = nullptr;
    alarm->ring();
    return true;
}

SystemClock::SystemClock()
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { fire(); });
}

Clock::Time SystemClock::now() const noexcept
{
    return Time(std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch()));
}

void SystemClock::deadlinesChanged() noexcept
{
    const auto next = nextDeadline();
    if (!next) {
        m_timer.stop();
        m_armedFor.reset();
        return;
    }
    if (m_armedFor && *m_armedFor <= *next)
        return; // a wakeup that is at most once too early; fire() re-arms
    using std::chrono::milliseconds;
    const auto wait = std::chrono::ceil<milliseconds>(*next - now());
    const auto bounded = std::clamp(wait, milliseconds(0), milliseconds(24 * 3600 * 1000));
    m_armedFor = next;
    m_timer.start(bounded);
}

void SystemClock::fire()
{
    m_armedFor.reset();
    const Time due = now();
    while (ringNext(due)) { }
    deadlinesChanged();
}

} // namespace jobs
