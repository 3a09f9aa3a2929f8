#include "Tunnels/VeranoxTunnelOperations.h"
#include "Profiles/VeranoxGroupedByProfile.h"
#include "State/VeranoxState.h"
#include "Tunnels/VeranoxTunnelErrorMessage.h"
#include "Tunnels/VeranoxTunnelPasswords.h"

using namespace Qt::StringLiterals;
using Outcome = VeranoxActionOutcome;

VeranoxTunnelOperations::VeranoxTunnelOperations(
    VeranoxState &state, VeranoxAPIClientProtocol &client, VeranoxTunnelPasswords &passwords)
    : m_state(state),
      m_client(client),
      m_passwords(passwords)
{
}

QList<std::pair<VeranoxProfile, QList<VeranoxTunnel>>> VeranoxTunnelOperations::byProfile() const
{
    return groupedByProfile(m_state.profiles(), m_state.tunnels());
}

jobs::Async<VeranoxTunnelDraft> VeranoxTunnelOperations::draft(VeranoxTunnel tunnel)
{
    co_return VeranoxTunnelDraft(tunnel, co_await m_passwords.isKept(tunnel));
}

jobs::Async<Outcome> VeranoxTunnelOperations::save(VeranoxTunnelDraft draft)
{
    const auto tunnel = draft.makeTunnel();
    if (!tunnel)
        co_return Outcome::failure(tunnel.error().message);
    if (const auto conflict = draft.nameConflict(m_state.tunnels()))
        co_return Outcome::failure(*conflict);
    const QString name = draft.normalName();
    const Outcome outcome = co_await apply(m_client.saveTunnel(name, draft.originalName, *tunnel),
        u"The Veranox service is not running, so the tunnel was not saved."_s);
    if (outcome.isSuccess())
        co_await m_passwords.keep(draft, name);
    co_return outcome;
}

jobs::Async<Outcome> VeranoxTunnelOperations::remove(QString name)
{
    const Outcome outcome = co_await apply(
        m_client.deleteTunnel(name), u"The Veranox service is not running, so the tunnel was not deleted."_s);
    if (outcome.isSuccess())
        co_await m_passwords.forget(name);
    co_return outcome;
}

jobs::Async<Outcome> VeranoxTunnelOperations::apply(VeranoxAPICall<QList<VeranoxTunnel>> change, QString unavailable)
{
    auto fresh = co_await std::move(change);
    if (!fresh) {
        if (fresh.error().isCancellation())
            co_return Outcome::cancelled();
        co_return Outcome::failure(VeranoxTunnelErrorMessage::message(fresh.error(), unavailable));
    }
    m_state.adoptTunnels(*std::move(fresh));
    co_return Outcome::success();
}

jobs::Async<Outcome> VeranoxTunnelOperations::restart(QString name)
{
    co_await m_passwords.send(name);
    co_return co_await switchTunnel(name, m_client.restartTunnel(name));
}

jobs::Async<Outcome> VeranoxTunnelOperations::setEnabled(QString name, bool enabled)
{
    co_return co_await switchTunnel(name, enabled ? m_client.startTunnel(name) : m_client.stopTunnel(name));
}

// Speaks in the failure's own words.
jobs::Async<Outcome> VeranoxTunnelOperations::switchTunnel(QString name, VeranoxAPICall<QList<VeranoxTunnel>> change)
{
    auto fresh = co_await std::move(change);
    if (fresh) {
        m_state.adoptTunnels(*std::move(fresh));
        co_return Outcome::success();
    }
    if (fresh.error().isCancellation())
        co_return Outcome::cancelled();
    const Outcome outcome = Outcome::failure(fresh.error().localizedDescription()).about(u"Tunnel "_s + name);
    m_state.conclude(outcome);
    co_return outcome;
}
