#pragma once
#include "Base/Jobs/Jobs.h"

class VeranoxActivityLog;
class VeranoxRefreshLoop;
class VeranoxStartupSettlement;
class VeranoxState;
class VeranoxSupervision;

// The launch of the application: a start has two ends, the moment the service answers and the moment the profiles have
// settled. The log tells both apart, so that a slow start is not taken for a failed one. Main thread only.
class VeranoxStartup {
public:
    struct Collaborators { // all outlive it
        VeranoxState &state;
        VeranoxActivityLog &log;
        VeranoxSupervision &supervision;
        VeranoxRefreshLoop &loop;
        VeranoxStartupSettlement &settlement;
    };

    explicit VeranoxStartup(Collaborators with) : m_with(with) { }
    Q_DISABLE_COPY_MOVE(VeranoxStartup)

    jobs::Async<> run();

private:
    Collaborators m_with;
};
