#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "State/VeranoxState.h"

class VeranoxActivityLog;
class VeranoxProfileEditing;
class VeranoxRecoveryBudget;
class VeranoxStartupSettlement;
class VeranoxTunnelPasswords;

// Brings the state into step with the service. Main thread only.
class VeranoxRefresh {
public:
    struct Collaborators { // all outlive it
        VeranoxState &state;
        VeranoxProfileEditing &editing;
        VeranoxAPIClientProtocol &client;
        VeranoxTunnelPasswords &passwords;
        VeranoxActivityLog &log;
        VeranoxRecoveryBudget &recovery;
        VeranoxStartupSettlement &settlement;
    };

    explicit VeranoxRefresh(Collaborators with) : m_with(with) { }
    Q_DISABLE_COPY_MOVE(VeranoxRefresh)

    // One refresh. Returns at once while another runs. All its requests carry one correlation identifier: the one bound
    // to the job at hand, or a fresh one. Once its job is cancelled it changes nothing more; nor does it once the
    // application quits.
    jobs::Async<> run();

private:
    struct Fetches; // the six reads of one refresh, running side by side

    jobs::Async<> perform();
    VeranoxAPICall<> applyRequired(Fetches *fetches);
    jobs::Async<> applyOptional(Fetches *fetches, VeranoxState::Generations atStart);
    jobs::Async<> end(Fetches *fetches);
    void fail(const VeranoxAPIFailure &failure);
    void succeed();
    bool isUnwanted() const;

    Collaborators m_with;
};
