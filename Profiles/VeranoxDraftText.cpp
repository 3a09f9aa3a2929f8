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

} // namespace VeranoxDraftText
