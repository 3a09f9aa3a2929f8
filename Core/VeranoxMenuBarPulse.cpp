#include "Core/VeranoxMenuBarPulse.h"
#include "Core/VeranoxDerivedState.h"
#include "State/VeranoxState.h"
#include <array>

using namespace std::chrono_literals;

namespace {

constexpr std::array phases{0.35, 0.55, 0.8, 1.0, 0.8, 0.55}; // one breath: 6 steps, 1.08 seconds
constexpr jobs::Clock::Duration step = 180ms;
constexpr double atRest = 1.0;

bool somethingStarts(const VeranoxState &state)
{
    return VeranoxDerivedState::menuBarIcon(state) == MenuBarIcon::starting;
}

} // namespace

VeranoxMenuBarPulse::VeranoxMenuBarPulse(jobs::MainQueue &queue, VeranoxState &state) : m_state(state), m_jobs(queue)
{
    m_watches.add([&state] { return somethingStarts(state); }, [this] { follow(); });
    follow();
}

VeranoxMenuBarPulse::~VeranoxMenuBarPulse() = default;

void VeranoxMenuBarPulse::announceChange()
{
    m_state.announceChange();
}

void VeranoxMenuBarPulse::follow()
{
    m_jobs.start(apply(somethingStarts(m_state)));
}

jobs::Async<> VeranoxMenuBarPulse::apply(bool on)
{
    if (on)
        start();
    else
        stop();
    co_return;
}

void VeranoxMenuBarPulse::start()
{
    if (!m_pulseTask)
        m_pulseTask = m_jobs.start(pulse());
}

void VeranoxMenuBarPulse::stop()
{
    std::exchange(m_pulseTask, {}).cancel();
    m_phase = atRest;
}

jobs::Async<> VeranoxMenuBarPulse::pulse()
{
    for (std::size_t index = 0; !jobs::this_job::cancelled(); ++index) {
        m_phase = phases[index % phases.size()];
        co_await jobs::sleep(step);
    }
}
