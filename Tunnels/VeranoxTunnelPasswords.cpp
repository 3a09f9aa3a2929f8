#include "Tunnels/VeranoxTunnelPasswords.h"
#include "State/VeranoxState.h"
#include "Tunnels/VeranoxNoTunnelSecrets.h"
#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Unlocking = VeranoxTunnelSecretStoring::Unlocking;

namespace {

constexpr jobs::Clock::Duration republishingLimit = 1s; // of a refresh's patience, for all tunnels together

jobs::Async<> resolveAfter(jobs::Clock::Duration limit, jobs::Resolver<> resolver)
{
    co_await jobs::sleep(limit); // cut short or not: who was cancelled waits no longer either
    resolver.resolve();
}

} // namespace

VeranoxTunnelPasswords::VeranoxTunnelPasswords(jobs::MainQueue &queue, VeranoxState &state,
    VeranoxAPIClientProtocol &client, std::unique_ptr<VeranoxTunnelSecretStoring> secrets)
    : m_state(state),
      m_client(client),
      m_secrets(std::move(secrets)),
      m_jobs(queue)
{
    if (!m_secrets)
        m_secrets = std::make_unique<VeranoxNoTunnelSecrets>(QString());
}

VeranoxTunnelPasswords::~VeranoxTunnelPasswords() = default;

jobs::Async<bool> VeranoxTunnelPasswords::isKept(VeranoxTunnel tunnel)
{
    co_return VeranoxTunnelDraft::asksForStoredPassword(tunnel) && co_await m_secrets->hasPassword(tunnel.name);
}

jobs::Async<> VeranoxTunnelPasswords::keep(VeranoxTunnelDraft draft, QString saved)
{
    const bool isRenamed = draft.originalName && *draft.originalName != saved;
    const QString previous = draft.originalName.value_or(saved);
    if (!draft.useSSH || draft.sshAuth != VeranoxTunnelSSHAuth::password) {
        co_await m_secrets->deletePassword(saved);
        if (isRenamed)
            co_await m_secrets->deletePassword(previous);
        co_return;
    }
    QString password = draft.password.trimmed();
    if (password.isEmpty()) {
        const auto stored = co_await m_secrets->password(previous, Unlocking::ask);
        if (!stored)
            co_return;
        password = *stored;
    }
    const bool isStored = co_await m_secrets->setPassword(password, saved);
    if (isStored && isRenamed)
        co_await m_secrets->deletePassword(previous);
    std::ignore = co_await m_client.setTunnelSecret(saved, password);
}

jobs::Async<> VeranoxTunnelPasswords::forget(QString tunnelName)
{
    co_await m_secrets->deletePassword(tunnelName);
}

jobs::Async<> VeranoxTunnelPasswords::send(QString tunnelName)
{
    const auto tunnel = std::ranges::find(m_state.tunnels(), tunnelName, &VeranoxTunnel::name);
    if (tunnel != m_state.tunnels().end() && VeranoxTunnelDraft::asksForStoredPassword(*tunnel))
        co_await tell(tunnelName, Unlocking::ask);
}

jobs::Async<> VeranoxTunnelPasswords::tell(QString tunnelName, Unlocking unlocking)
{
    if (const auto password = co_await m_secrets->password(tunnelName, unlocking))
        std::ignore = co_await m_client.setTunnelSecret(tunnelName, *password);
}

jobs::Async<> VeranoxTunnelPasswords::republish()
{
    QStringList names;
    for (const VeranoxTunnel &tunnel : m_state.tunnels()) {
        if (VeranoxTunnelDraft::asksForStoredPassword(tunnel))
            names.append(tunnel.name);
    }
    if (names.isEmpty() || m_walk.running() || jobs::this_job::cancelled())
        co_return;
    const jobs::Completion<> ended(m_jobs.queue());
    m_walk = m_jobs.start(walk(names, ended.resolver()));
    const auto limit = jobs::fork(resolveAfter(republishingLimit, ended.resolver()));
    co_await ended;
    if (jobs::this_job::cancelled())
        m_walk.cancel();
}

jobs::Async<> VeranoxTunnelPasswords::walk(QStringList tunnelNames, jobs::Resolver<> ended)
{
    for (const QString &name : tunnelNames) {
        if (jobs::this_job::cancelled())
            break;
        co_await tell(name, Unlocking::askOnce);
    }
    ended.resolve();
}
