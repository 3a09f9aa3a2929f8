// What follows from the store's state without being state of its own.
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

namespace {

// The node has not said yet where it will end up.
bool isUndecided(const QString &backendState)
{
    return backendState.isEmpty() || backendState == "NoState"_L1 || backendState == "Starting"_L1;
}

bool isSettling(const VeranoxProfile &profile)
{
    return !profile.status.ok && isUndecided(profile.status.backendState);
}

bool needsAttention(const VeranoxProfile &profile)
{
    return !profile.status.ok && !isUndecided(profile.status.backendState);
}

bool needsAttention(const VeranoxTunnel &tunnel)
{
    return !tunnel.disabled && (tunnel.state == "error"_L1 || !tunnel.lastError.isEmpty());
}

// A blocked publication waits for its owner's decision; it has not failed.
bool needsAttention(const VeranoxPublication &publication)
{
    return !publication.disabled && publication.state != "blocked"_L1
        && (publication.state == "error"_L1 || !publication.lastError.trimmed().isEmpty());
}

template <class Record> bool anyNeedsAttention(const QList<Record> &records)
{
    return std::any_of(records.begin(), records.end(), [](const Record &record) { return needsAttention(record); });
}

} // namespace

QString VeranoxStore::statusTitle() const
{
    return m_routerNeedsRestart ? u"Restart to apply"_s : m_serviceState.title();
}

QString VeranoxStore::routerStatusDetail() const
{
    return m_serviceState.isOnline() ? u"Managed by Veranox service"_s : u"Start Veranox to enable local routing"_s;
}

bool VeranoxStore::statusActionRestartsService() const
{
    return m_routerNeedsRestart || m_serviceState.kind() == ServiceState::Kind::offline
        || m_serviceState.kind() == ServiceState::Kind::error;
}

bool VeranoxStore::profilesSettling() const
{
    return std::any_of(m_profiles.begin(), m_profiles.end(), isSettling);
}

bool VeranoxStore::menuBarNeedsAttention() const
{
    return anyNeedsAttention(m_profiles) || anyNeedsAttention(m_tunnels) || anyNeedsAttention(m_publications);
}

MenuBarIcon VeranoxStore::menuBarIcon() const
{
    switch (m_serviceState.kind()) {
    case ServiceState::Kind::starting:
        return MenuBarIcon::starting;
    case ServiceState::Kind::offline:
        return MenuBarIcon::offline;
    case ServiceState::Kind::error:
        return MenuBarIcon::failed;
    case ServiceState::Kind::online:
        break;
    }
    if (m_profiles.isEmpty())
        return MenuBarIcon::offline;
    if (menuBarNeedsAttention())
        return MenuBarIcon::attention;
    return profilesSettling() ? MenuBarIcon::starting : MenuBarIcon::normal;
}

QUrl VeranoxStore::pacURL() const
{
    const QUrl url(u"http://"_s + m_config.router.pacListen + u"/proxy.pac"_s, QUrl::StrictMode);
    if (!url.isValid())
        qFatal("The PAC listen address %ls makes no URL.", qUtf16Printable(m_config.router.pacListen));
    return url;
}

bool VeranoxStore::routerDraftHasChanges() const
{
    return ::routerDraftHasChanges(m_routerDraft, m_editableConfig);
}

bool VeranoxStore::profileDraftHasChanges() const
{
    return ::profileDraftHasChanges(m_profileDraft, m_editableConfig);
}
