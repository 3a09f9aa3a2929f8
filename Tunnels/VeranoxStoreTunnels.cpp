// What a person does with tunnels, and where their passwords go.
#include "Core/VeranoxStore.h"
#include "Profiles/VeranoxGroupedByProfile.h"
#include "Tunnels/VeranoxTunnelErrorMessage.h"
#include <algorithm>

using namespace Qt::StringLiterals;
using Unlocking = VeranoxTunnelSecretStoring::Unlocking;

QList<std::pair<VeranoxProfile, QList<VeranoxTunnel>>> VeranoxStore::tunnelsByProfile() const
{
    return groupedByProfile(m_profiles, m_tunnels);
}

jobs::Async<VeranoxTunnelDraft> VeranoxStore::tunnelDraft(VeranoxTunnel tunnel)
{
    const bool isPasswordStored =
        VeranoxTunnelDraft::asksForStoredPassword(tunnel) && co_await m_tunnelSecrets->hasPassword(tunnel.name);
    co_return VeranoxTunnelDraft(tunnel, isPasswordStored);
}

jobs::Async<std::optional<QString>> VeranoxStore::saveTunnelDraft(VeranoxTunnelDraft draft)
{
    const auto tunnel = draft.makeTunnel();
    if (!tunnel)
        co_return tunnel.error().message;
    if (auto conflict = draft.nameConflict(m_tunnels))
        co_return conflict;
    const QString name = draft.normalName();
    auto problem = co_await applyTunnels(m_apiClient->saveTunnel(name, draft.originalName, *tunnel),
        u"The Veranox service is not running, so the tunnel was not saved."_s);
    if (!problem)
        co_await storeTunnelPassword(draft, name);
    co_return problem;
}

jobs::Async<std::optional<QString>> VeranoxStore::deleteTunnel(QString name)
{
    auto problem = co_await applyTunnels(
        m_apiClient->deleteTunnel(name), u"The Veranox service is not running, so the tunnel was not deleted."_s);
    if (!problem)
        co_await m_tunnelSecrets->deletePassword(name);
    co_return problem;
}

// Gives the sentence of what failed; an empty one when it was cancelled.
jobs::Async<std::optional<QString>> VeranoxStore::applyTunnels(
    VeranoxAPICall<QList<VeranoxTunnel>> change, QString unavailable)
{
    auto fresh = co_await std::move(change);
    if (!fresh) {
        if (fresh.error().isCancellation())
            co_return QString();
        co_return VeranoxTunnelErrorMessage::message(fresh.error(), unavailable);
    }
    adoptTunnels(*std::move(fresh));
    co_return std::nullopt;
}

jobs::Async<> VeranoxStore::restartTunnel(QString name)
{
    const auto tunnel = std::ranges::find(m_tunnels, name, &VeranoxTunnel::name);
    if (tunnel != m_tunnels.end() && VeranoxTunnelDraft::asksForStoredPassword(*tunnel))
        co_await sendStoredPassword(name, Unlocking::ask);
    co_await switchTunnel(name, m_apiClient->restartTunnel(name));
}

jobs::Async<> VeranoxStore::setTunnelEnabled(QString name, bool enabled)
{
    co_await switchTunnel(name, enabled ? m_apiClient->startTunnel(name) : m_apiClient->stopTunnel(name));
}

jobs::Async<> VeranoxStore::switchTunnel(QString name, VeranoxAPICall<QList<VeranoxTunnel>> change)
{
    auto fresh = co_await std::move(change);
    if (fresh)
        adoptTunnels(*std::move(fresh));
    else if (!fresh.error().isCancellation())
        setLastActionMessage(u"Tunnel "_s + name + u": "_s + fresh.error().localizedDescription());
}

// Whatever happens to the keyring or on the way to the service, the tunnel is saved.
jobs::Async<> VeranoxStore::storeTunnelPassword(VeranoxTunnelDraft draft, QString saved)
{
    const bool isRenamed = draft.originalName && *draft.originalName != saved;
    const QString previous = draft.originalName.value_or(saved);
    if (!draft.useSSH || draft.sshAuth != VeranoxTunnelSSHAuth::password) {
        co_await m_tunnelSecrets->deletePassword(saved);
        if (isRenamed)
            co_await m_tunnelSecrets->deletePassword(previous);
        co_return;
    }
    QString password = draft.password.trimmed();
    if (password.isEmpty()) {
        const auto stored = co_await m_tunnelSecrets->password(previous, Unlocking::ask);
        if (!stored)
            co_return;
        password = *stored;
    }
    const bool isStored = co_await m_tunnelSecrets->setPassword(password, saved);
    if (isStored && isRenamed)
        co_await m_tunnelSecrets->deletePassword(previous);
    std::ignore = co_await m_apiClient->setTunnelSecret(saved, password);
}

// A failure on the way is nobody's news: the next refresh tries again.
jobs::Async<> VeranoxStore::sendStoredPassword(QString tunnelName, Unlocking unlocking)
{
    if (const auto password = co_await m_tunnelSecrets->password(tunnelName, unlocking))
        std::ignore = co_await m_apiClient->setTunnelSecret(tunnelName, *password);
}

// A service that has restarted knows no password: it is told each of them with every refresh.
jobs::Async<> VeranoxStore::republishTunnelSecrets()
{
    const QList<VeranoxTunnel> walk = m_tunnels;
    for (const VeranoxTunnel &tunnel : walk) {
        if (jobs::this_job::cancelled())
            co_return;
        if (VeranoxTunnelDraft::asksForStoredPassword(tunnel))
            co_await sendStoredPassword(tunnel.name, Unlocking::askOnce);
    }
}
