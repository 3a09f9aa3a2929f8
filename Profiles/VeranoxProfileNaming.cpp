#include "Profiles/VeranoxProfileNaming.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool names(const QString &lowerCaseLine, const QString &profileName)
{
    const QString name = profileName.toLower();
    const QStringList mentions{
        u'[' + name + u']', u"profile="_s + name, u"profile=\""_s + name + u'"', u' ' + name, name + u'.'};
    return std::ranges::any_of(mentions, [&](const QString &mention) { return lowerCaseLine.contains(mention); });
}

} // namespace

int nextProfileIndex(const std::optional<VeranoxEditableConfig> &document, qsizetype reportedProfiles)
{
    int candidate = static_cast<int>(document ? document->profiles.size() : reportedProfiles) + 1;
    while (document && document->profiles.contains(u"tailnet"_s + QString::number(candidate)))
        ++candidate;
    return candidate;
}

std::optional<QString> inferredProfileName(const QString &line, QStringList profileNames)
{
    profileNames.sort();
    const QString lowerCaseLine = line.toLower();
    const auto found =
        std::ranges::find_if(profileNames, [&](const QString &name) { return names(lowerCaseLine, name); });
    return found == profileNames.end() ? std::nullopt : std::optional(*found);
}
