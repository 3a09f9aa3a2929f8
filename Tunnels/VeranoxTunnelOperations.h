#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "State/VeranoxActionOutcome.h"
#include "Tunnels/VeranoxTunnelDraft.h"
#include <utility>

class VeranoxState;
class VeranoxTunnelPasswords;
struct VeranoxProfile;

// What a person does with tunnels. What the service answers a change with is adopted at once; on a failure the list
// stays, and the outcome is one sentence. Main thread only; what it is given outlives it.
class VeranoxTunnelOperations {
public:
    VeranoxTunnelOperations(VeranoxState &state, VeranoxAPIClientProtocol &client, VeranoxTunnelPasswords &passwords);
    Q_DISABLE_COPY_MOVE(VeranoxTunnelOperations)

    // Each profile that has tunnels, in the shared order of profiles, with its tunnels in the service's order.
    QList<std::pair<VeranoxProfile, QList<VeranoxTunnel>>> byProfile() const;

    // The draft of a tunnel; the keyring is asked only where a password may be kept.
    jobs::Async<VeranoxTunnelDraft> draft(VeranoxTunnel tunnel);

    // Saves the draft and then sees to its password, which can make nothing fail.
    jobs::Async<VeranoxActionOutcome> save(VeranoxTunnelDraft draft);

    // Deletes the tunnel and then its password, which stays after a failure.
    jobs::Async<VeranoxActionOutcome> remove(QString name);

    // Of these two a failure becomes the last action's message, too.
    jobs::Async<VeranoxActionOutcome> restart(QString name);
    jobs::Async<VeranoxActionOutcome> setEnabled(QString name, bool enabled);

private:
    jobs::Async<VeranoxActionOutcome> apply(VeranoxAPICall<QList<VeranoxTunnel>> change, QString unavailable);
    jobs::Async<VeranoxActionOutcome> switchTunnel(QString name, VeranoxAPICall<QList<VeranoxTunnel>> change);

    VeranoxState &m_state;
    VeranoxAPIClientProtocol &m_client;
    VeranoxTunnelPasswords &m_passwords;
};
