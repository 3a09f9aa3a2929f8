#include "Profiles/VeranoxDraftText.h"

using namespace Qt::StringLiterals;

namespace VeranoxDraftText {

QString normalName(const QString &typed)
{
    return typed.trimmed().toLower();
}

QString typedLabel(const QString &displayName, const QString &name)
{
    return displayName == name ? QString() : displayName;
}

QString enabledSummary(qint64 enabled, qint64 disabled)
{
    return QString::number(enabled) + u" enabled · "_s + QString::number(disabled) + u" off"_s;
}

std::optional<QString> attentionSummary(qint64 count)
{
    if (count < 1)
        return std::nullopt;
    return count == 1 ? u"1 needs attention"_s : QString::number(count) + u" need attention"_s;
}

} // namespace VeranoxDraftText
