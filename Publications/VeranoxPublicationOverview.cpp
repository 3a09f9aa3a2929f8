#include "Publications/VeranoxPublicationOverview.h"

using namespace Qt::StringLiterals;

namespace {

bool isBlocked(const VeranoxPublication &publication)
{
    return publication.state == "blocked"_L1;
}

bool isDisabled(const VeranoxPublication &publication)
{
    return publication.disabled && !isBlocked(publication);
}

std::optional<QString> counted(qint64 count, const QString &what)
{
    return count < 1 ? std::nullopt : std::optional(QString::number(count) + what);
}

} // namespace

VeranoxPublicationOverview::VeranoxPublicationOverview(const QList<VeranoxPublication> &publications)
    : VeranoxRecordOverview(publications, std::ranges::count_if(publications, isDisabled)),
      blockedCount(std::ranges::count_if(publications, isBlocked)),
      unreachableCount(std::ranges::count_if(publications, &VeranoxPublication::isUnreachable))
{
    enabledCount -= blockedCount;
}

std::optional<QString> VeranoxPublicationOverview::blockedSummary() const
{
    return counted(blockedCount, u" blocked — Funnel isn't available in this version"_s);
}

std::optional<QString> VeranoxPublicationOverview::unreachableSummary() const
{
    return counted(unreachableCount, u" unreachable — the tailnet policy admits no device"_s);
}
