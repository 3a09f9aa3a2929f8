#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "Base/Jobs/Jobs.h"
#include "Tunnels/VeranoxTunnelDraft.h"
#include "Tunnels/VeranoxTunnelSecretStoring.h"
#include <memory>

class VeranoxState;

// Where the passwords of SSH tunnels go: they are kept under the tunnel's name, and the service is told them by a call
// of their own. Whatever happens to the keyring or on the way to the service is nobody's news: the next refresh tries
// again. Main thread only; the state and the client outlive it.
class VeranoxTunnelPasswords {
public:
    VeranoxTunnelPasswords(jobs::MainQueue &queue, VeranoxState &state, VeranoxAPIClientProtocol &client,
        std::unique_ptr<VeranoxTunnelSecretStoring> secrets); // absent: no password is kept
    ~VeranoxTunnelPasswords();

    // Whether a password of this tunnel may be used and is kept; the keyring is asked only where it may.
    jobs::Async<bool> isKept(VeranoxTunnel tunnel);

    // Keeps, moves, sends or deletes the password as the draft, saved under this name, asks for.
    jobs::Async<> keep(VeranoxTunnelDraft draft, QString saved);

    jobs::Async<> forget(QString tunnelName);

    // Tells the service the password that is kept for a tunnel of this name that uses one. May ask the user.
    jobs::Async<> send(QString tunnelName);

    // A service that has restarted knows no password: it is told each of them again. Waits for that, but no longer than
    // a second: a keyring that does not answer is left to itself, and is not asked anew before it has answered.
    jobs::Async<> republish();

private:
    jobs::Async<> tell(QString tunnelName, VeranoxTunnelSecretStoring::Unlocking unlocking);
    jobs::Async<> walk(QStringList tunnelNames, jobs::Resolver<> ended);

    VeranoxState &m_state;
    VeranoxAPIClientProtocol &m_client;
    std::unique_ptr<VeranoxTunnelSecretStoring> m_secrets;
    jobs::Job<> m_walk;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
