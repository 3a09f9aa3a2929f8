#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include <optional>

class VeranoxActivityLog;
class VeranoxRecoveryBudget;
class VeranoxState;

// Attaches to the service that answers, or launches our own and waits until it answers. Main thread only.
class VeranoxServiceStart {
public:
    struct Collaborators { // all that is referred to outlives it
        VeranoxState &state;
        VeranoxActivityLog &log;
        VeranoxAPIClientProtocol &client;
        VeranoxRuntimeClientProtocol &runtime;
        VeranoxRecoveryBudget &recovery;
        std::optional<VeranoxCommand> command; // absent: a service can only be attached to
        jobs::Clock::Duration readinessTimeout; // from launch to first answer
    };

    VeranoxServiceStart(jobs::MainQueue &queue, Collaborators with);

    // The outcome is in the state. Callers at the same time share one start.
    jobs::Async<> ensure();

    // What is on its way launches nothing any more, and says nothing.
    void cancel() { m_task.cancel(); }

private:
    jobs::Async<> perform();
    bool launch();
    jobs::Async<bool> becomesReady();
    void conclude(bool isReady);
    void recordContact();
    void recordFailure(const QString &message);

    Collaborators m_with;
    jobs::Job<> m_task;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
