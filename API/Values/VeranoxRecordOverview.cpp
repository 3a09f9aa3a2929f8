#include "API/Values/VeranoxRecordOverview.h"

using namespace Qt::StringLiterals;

QString VeranoxRecordOverview::statusSummary() const
{
    return QString::number(enabledCount) + u" enabled · "_s + QString::number(disabledCount) + u" off"_s;
}

std::optional<QString> VeranoxRecordOverview::attentionSummary() const
{
    if (attentionCount < 1)
        return std::nullopt;
    return attentionCount == 1 ? u"1 needs attention"_s : QString::number(attentionCount) + u" need attention"_s;
}
