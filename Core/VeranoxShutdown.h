#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include "State/VeranoxActionOutcome.h"

class VeranoxActivityLog;
class VeranoxMenuBarPulse;
class VeranoxRefreshLoop;
class VeranoxServiceStart;
class VeranoxStartupSettlement;
class VeranoxState;

// The two ends of the application: an orderly quit, and the last word when there is no time for one. Main thread only.
class VeranoxShutdown {
public:
    struct Collaborators { // all outlive it
        VeranoxState &state;
        VeranoxActivityLog &log;
        VeranoxAPIClientProtocol &client;
        VeranoxRuntimeClientProtocol &runtime;
        VeranoxServiceStart &serviceStart;
        VeranoxRefreshLoop &loop;
        VeranoxStartupSettlement &settlement;
        VeranoxMenuBarPulse &pulse;
    };

    VeranoxShutdown(jobs::MainQueue &queue, Collaborators with);

    // Stops the service in order. The first call does the work; every other waits for that one's end.
    jobs::Async<> quit();

    // Immediate, idempotent.
    void now();

private:
    jobs::Async<> perform();
    jobs::Async<> requestServiceShutdown();

    Collaborators m_with;
    jobs::Job<> m_task;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
