#include "Base/Jobs/Clock.h"
#include <QtGlobal>
#include <algorithm>

namespace jobs {

Clock::Alarm::~Alarm()
{
    if (m_clock)
        m_clock->disarm(*this);
}

Clock::~Clock()
{
    Q_ASSERT_X(m_alarms.empty(), "Clock", "an alarm outlives its clock");
}

Clock::Time Clock::after(Duration wait) const noexcept
{
    const Time start = now();
    return start + std::clamp(wait, Duration::zero(), Time::max() - std::max(start, Time{}));
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
    const auto next = nextDeadline();
    if (!next || *next > upTo)
        return false;
    Alarm &alarm = **m_alarms.begin();
    m_alarms.erase(m_alarms.begin());
    alarm.m_clock = nullptr;
    alarm.ring();
    return true;
}

} // namespace jobs
