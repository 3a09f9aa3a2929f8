// What follows from the store's state without being state of its own.
#include "API/Values/VeranoxRecordClass.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

namespace {

template <class Record> bool anyIs(VeranoxRecordClass which, const QList<Record> &records)
{
    return std::ranges::any_of(records, [which](const Record &record) { return classOf(record) == which; });
}

} // namespace

QString VeranoxStore::statusTitle() const
{
    return m_routerNeedsRestart ? u"Restart to apply"_s : m_serviceState.title();
}

QString VeranoxStore::routerStatusDetail() const
{
    if (m_serviceState.isOnline())
        return u"Managed by Veranox service"_s;
    const auto router = m_runtimeClient->routerProcess();
    return router && router->isRunning ? u"Waiting for the service to answer"_s
                                       : u"Start Veranox to enable local routing"_s;
}

bool VeranoxStore::statusActionRestartsService() const
{
    return m_routerNeedsRestart || m_serviceState.kind() == ServiceState::Kind::offline
        || m_serviceState.kind() == ServiceState::Kind::error;
}

bool VeranoxStore::profilesSettling() const
{
    return anyIs(VeranoxRecordClass::starting, m_profiles);
}

bool VeranoxStore::menuBarNeedsAttention() const
{
    constexpr auto failed = VeranoxRecordClass::failed;
    return anyIs(failed, m_profiles) || anyIs(failed, m_tunnels) || anyIs(failed, m_publications);
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
