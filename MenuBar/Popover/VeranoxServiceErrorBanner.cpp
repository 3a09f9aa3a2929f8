#include "MenuBar/Popover/VeranoxServiceErrorBanner.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

VeranoxServiceErrorBanner::VeranoxServiceErrorBanner(VeranoxStore &store, QObject *parent)
    : QObject(parent),
      m_store(store)
{
    m_watches.add(
        [&store] { return std::pair(store.serviceState(), store.isRestartingRouter()); }, [this] { Q_EMIT changed(); });
}

bool VeranoxServiceErrorBanner::visible() const
{
    return m_store.serviceState().kind() == ServiceState::Kind::error;
}

QString VeranoxServiceErrorBanner::title() const
{
    return u"Veranox service stopped"_s;
}

QString VeranoxServiceErrorBanner::text() const
{
    return u"The local Veranox service isn't running, so traffic isn't being routed."_s;
}

QString VeranoxServiceErrorBanner::buttonTitle() const
{
    return m_store.isRestartingRouter() ? u"Restarting…"_s : u"Restart Veranox"_s;
}

bool VeranoxServiceErrorBanner::buttonEnabled() const
{
    return !m_store.isRestartingRouter();
}

void VeranoxServiceErrorBanner::fix()
{
    if (m_store.statusActionRestartsService())
        m_store.restartRouterForPendingChanges();
    else
        m_store.requestRefresh();
}
