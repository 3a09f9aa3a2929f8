#pragma once
#include "Base/Jobs/Jobs.h"
#include <QString>
#include <optional>

class VeranoxActivityLog;
class VeranoxState;

// The second end of a start: the moment the profiles have settled, or the end of our patience. The log is told of it
// once. Main thread only; the state and the log outlive it.
class VeranoxStartupSettlement {
public:
    VeranoxStartupSettlement(
        jobs::MainQueue &queue, VeranoxState &state, VeranoxActivityLog &log, jobs::Clock::Duration timeout);

    // Watches from now on, if profiles are still settling.
    void beginIfNeeded(const QString &correlationID);

    // A refresh has brought what the service knows.
    void finishIfSettled();

    // Nothing is told any more.
    void cancel();

private:
    struct Observation {
        QString correlationID; // of the start that began it
        jobs::Clock::Time startedAt;
    };

    jobs::Async<> limit();
    void finish(const QString &outcome);

    VeranoxState &m_state;
    VeranoxActivityLog &m_log;
    const jobs::Clock::Duration m_timeout;
    std::optional<Observation> m_observation;
    jobs::Job<> m_timeoutTask;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
