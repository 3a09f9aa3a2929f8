#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include "State/VeranoxActionOutcome.h"

class VeranoxActivityLog;
class VeranoxProfileEditing;
class VeranoxRecoveryBudget;
class VeranoxRefresh;
class VeranoxRefreshLoop;
class VeranoxServiceStart;
class VeranoxState;

// Keeps the local service alive: starts it, brings it back after a crash, restarts it on request. A quit has the last
// word over all of it. Main thread only.
class VeranoxSupervision {
public:
    struct Collaborators { // all outlive it
        VeranoxState &state;
        VeranoxProfileEditing &editing;
        VeranoxActivityLog &log;
        VeranoxAPIClientProtocol &client;
        VeranoxRuntimeClientProtocol &runtime;
        VeranoxRecoveryBudget &recovery;
        VeranoxServiceStart &serviceStart;
        VeranoxRefresh &refresh;
        VeranoxRefreshLoop &loop;
    };

    VeranoxSupervision(jobs::MainQueue &queue, Collaborators with);

    // Starts the service and reads everything once.
    jobs::Async<> startAndRefresh();

    // The same for a person who asked for it. A failure is in the state, and is no outcome.
    jobs::Async<VeranoxActionOutcome> startRouter();

    // Stops the service and starts it again, also when none runs. A call while another restarts does nothing.
    jobs::Async<VeranoxActionOutcome> restart();

    // The service that we launched ended although nobody stopped it.
    void handleExit(std::int32_t status);

private:
    jobs::Async<> recover(jobs::Clock::Duration delay);
    jobs::Async<> requestShutdown();
    VeranoxActionOutcome outcomeOfRestart();

    Collaborators m_with;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
