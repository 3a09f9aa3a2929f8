// The launch of the application, as the store sees it: a start has two ends, the moment the service answers and the
// moment the profiles have settled. The log tells both apart, so that a slow start is not taken for a failed one.
#include "Core/VeranoxStartupState.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

namespace {

qint64 wholeMilliseconds(jobs::Clock::Duration span)
{
    return std::max<qint64>(0, std::chrono::duration_cast<std::chrono::milliseconds>(span).count());
}

VeranoxLogDetails structuredEvent(const QString &code, bool isWarning, const QString &correlationID)
{
    return {.eventCode = code,
        .level = isWarning ? u"warn"_s : u"info"_s,
        .component = u"macos_app"_s,
        .correlationID = correlationID,
        .profileName = {}};
}

} // namespace

jobs::Async<> VeranoxStore::start()
{
    co_await prepareRuntimeLog();
    const QString correlationID = makeVeranoxIdentifier();
    appendLog(u"[APP] automatic local service startup requested"_s);
    co_await startServiceAndRefresh();
    if (m_isQuitting)
        co_return;
    startRefreshLoop();
    logStartupSummary(correlationID);
    beginStartupProfileSettlementObservationIfNeeded(correlationID);
}

QString VeranoxStore::currentStateFields() const
{
    return startupStateFields(m_serviceState, m_profiles, m_tunnels, m_publications);
}

void VeranoxStore::logStartupSummary(const QString &correlationID)
{
    appendLog(u"[APP] startup summary: "_s + currentStateFields(),
        structuredEvent(u"app_startup_summary"_s, !m_serviceState.isOnline(), correlationID));
}

void VeranoxStore::beginStartupProfileSettlementObservationIfNeeded(const QString &correlationID)
{
    cancelStartupProfileSettlementObservation();
    if (!profilesSettling())
        return;
    m_startupProfileSettlementObservation = {correlationID, m_jobs.queue().clock().now()};
    m_startupProfileSettlementTimeoutTask = m_jobs.start(limitStartupProfileSettlement());
}

jobs::Async<> VeranoxStore::limitStartupProfileSettlement()
{
    const jobs::Sleep ended = co_await jobs::sleep(m_startupProfileSettlementTimeout);
    if (ended == jobs::Sleep::full && !jobs::this_job::cancelled())
        finishStartupProfileSettlement(u"timeout"_s);
}

void VeranoxStore::cancelStartupProfileSettlementObservation()
{
    std::exchange(m_startupProfileSettlementTimeoutTask, {}).cancel();
    m_startupProfileSettlementObservation.reset();
}

void VeranoxStore::finishStartupProfileSettlement(const QString &outcome)
{
    const auto observation = m_startupProfileSettlementObservation;
    if (!observation)
        return;
    cancelStartupProfileSettlementObservation();
    const qint64 duration = wholeMilliseconds(m_jobs.queue().clock().now() - observation->startedAt);
    const bool isWarning = outcome != "settled"_L1 || !m_serviceState.isOnline() || menuBarNeedsAttention();
    appendLog(u"[APP] startup profile settlement: outcome=%1 duration_ms=%2 %3"_s.arg(outcome).arg(duration).arg(
                  currentStateFields()),
        structuredEvent(u"app_startup_profile_settlement"_s, isWarning, observation->correlationID));
}
