#include "Core/VeranoxStartup.h"
#include "API/Client/VeranoxDiagnosticSession.h"
#include "Core/VeranoxRefreshLoop.h"
#include "Core/VeranoxStartupSettlement.h"
#include "Core/VeranoxStartupState.h"
#include "Core/VeranoxSupervision.h"
#include "Log/VeranoxActivityLog.h"
#include "State/VeranoxState.h"

using namespace Qt::StringLiterals;

jobs::Async<> VeranoxStartup::run()
{
    co_await m_with.log.prepare();
    const QString correlationID = makeVeranoxIdentifier();
    m_with.log.append(u"[APP] automatic local service startup requested"_s);
    co_await m_with.supervision.startAndRefresh();
    if (m_with.state.isQuitting())
        co_return;
    m_with.loop.start();
    m_with.log.append(u"[APP] startup summary: "_s + startupStateFields(m_with.state),
        startupEvent(u"app_startup_summary"_s, !m_with.state.serviceState().isOnline(), correlationID));
    m_with.settlement.beginIfNeeded(correlationID);
}
