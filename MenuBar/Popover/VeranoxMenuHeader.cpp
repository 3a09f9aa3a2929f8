#include "MenuBar/Popover/VeranoxMenuHeader.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

VeranoxMenuHeader::VeranoxMenuHeader(VeranoxStore &store, QObject *parent) : QObject(parent), m_store(store)
{
    m_watches.add(
        [&store] { return std::tuple(store.serviceState(), store.routerNeedsRestart(), store.isRestartingRouter()); },
        [this] { Q_EMIT changed(); });
}

QString VeranoxMenuHeader::statusTitle() const
{
    return m_store.statusTitle();
}

VeranoxTone::Tone VeranoxMenuHeader::statusTone() const
{
    using Kind = VeranoxStatusBadge::Kind;
    return VeranoxTone::of(m_store.routerNeedsRestart() ? Kind::warning : m_store.serviceState().badge().kind);
}

QString VeranoxMenuHeader::actionSymbol() const
{
    if (m_store.routerNeedsRestart())
        return u"arrow.triangle.2.circlepath"_s;
    return m_store.statusActionRestartsService() ? u"power"_s : u"arrow.clockwise"_s;
}

QString VeranoxMenuHeader::actionTitle() const
{
    if (m_store.routerNeedsRestart())
        return u"Restart now to apply your changes"_s;
    return m_store.statusActionRestartsService() ? u"Restart Veranox"_s : u"Refresh Veranox status"_s;
}

bool VeranoxMenuHeader::actionEnabled() const
{
    return !m_store.isRestartingRouter();
}

void VeranoxMenuHeader::performAction()
{
    if (m_store.statusActionRestartsService())
        m_store.restartRouterForPendingChanges();
    else
        m_store.requestRefresh();
}
