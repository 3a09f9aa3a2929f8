// The status item breathes while something starts.
#include "Core/VeranoxStore.h"
#include <array>

using namespace std::chrono_literals;

namespace {

constexpr std::array phases{0.35, 0.55, 0.8, 1.0, 0.8, 0.55}; // one breath: 6 steps, 1.08 seconds
constexpr jobs::Clock::Duration step = 180ms;
constexpr double atRest = 1.0;

} // namespace

void VeranoxStore::followPulseRule()
{
    const bool on = menuBarIcon() == MenuBarIcon::starting;
    if (m_pulseRule == on)
        return;
    m_pulseRule = on;
    m_jobs.start(applyPulse(on));
}

jobs::Async<> VeranoxStore::applyPulse(bool on)
{
    if (on)
        startPulse();
    else
        stopPulse();
    co_return;
}

void VeranoxStore::startPulse()
{
    if (!m_pulseTask)
        m_pulseTask = m_jobs.start(pulse());
}

void VeranoxStore::stopPulse()
{
    std::exchange(m_pulseTask, {}).cancel();
    setMenuBarPulse(atRest);
}

jobs::Async<> VeranoxStore::pulse()
{
    for (std::size_t index = 0; !jobs::this_job::cancelled(); ++index) {
        setMenuBarPulse(phases[index % phases.size()]);
        co_await jobs::sleep(step);
    }
}
