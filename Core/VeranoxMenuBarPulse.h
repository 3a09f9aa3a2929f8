#pragma once
#include "Base/Jobs/Jobs.h"
#include "Base/Models/Watches.h"
#include <QObject>

class VeranoxState;

// The status item breathes while something starts: the phase walks its table exactly while the icon is the starting
// one, and rests at 1. Main thread only; the state outlives it, and tells of the phase's changes with its own.
class VeranoxMenuBarPulse final : public QObject {
    Q_OBJECT

public:
    VeranoxMenuBarPulse(jobs::MainQueue &queue, VeranoxState &state);
    ~VeranoxMenuBarPulse() override;

    double phase() const { return m_phase.value(); }

    // Until something starts anew.
    void stop();

private:
    void follow();
    jobs::Async<> apply(bool on);
    jobs::Async<> pulse();
    void start();
    void announceChange();

    VeranoxState &m_state;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(
        VeranoxMenuBarPulse, double, m_phase, 1.0, &VeranoxMenuBarPulse::announceChange)
    Watches m_watches;
    jobs::Job<> m_pulseTask;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
