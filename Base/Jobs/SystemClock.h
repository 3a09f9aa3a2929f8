#pragma once
#include "Base/Jobs/Clock.h"
#include <QTimer>

namespace jobs {

// The clock of the running program: steady time, and one timer armed for the earliest deadline. No deadline, no timer,
// no wake-up. Needs a Qt event loop in the thread that made it. Never rings early; late by about a millisecond.
class SystemClock final : public Clock {
public:
    SystemClock();
    Time now() const noexcept override;

private:
    void deadlinesChanged() noexcept override;
    void ringDue();
    void armTimer() noexcept;
    QTimer m_timer;
    std::optional<Time> m_armedFor;
    bool m_ringing = false;
};

} // namespace jobs
