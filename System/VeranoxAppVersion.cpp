#include "System/VeranoxAppVersion.h"
#include "Base/Text/Characters.h"
#include <algorithm>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView dirtySuffix("-dirty");
constexpr qsizetype noLimit = std::numeric_limits<qsizetype>::max();

// The trimmed text under a key; empty when there is none, when it is no text, or when it has more characters than the
// limit allows.
QString text(const QVariantMap &dictionary, const QString &key, qsizetype limit = noLimit)
{
    const QVariant value = dictionary.value(key);
    const QString trimmed = value.typeId() == QMetaType::QString ? value.toString().trimmed() : QString();
    return characters::exceed(limit, trimmed) ? QString() : trimmed;
}

QString orUnknown(const QString &value)
{
    return value.isEmpty() ? u"unknown"_s : value;
}

bool isHexadecimal(QStringView digits)
{
    return std::ranges::all_of(digits, [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); });
}

struct Hash {
    QString digits; // lower case
    bool isDirty;

    explicit Hash(const QString &value) : digits(value.toLower()), isDirty(digits.endsWith(dirtySuffix))
    {
        if (isDirty)
            digits.chop(dirtySuffix.size());
    }
    bool isBetween(qsizetype least, qsizetype most) const
    {
        return digits.size() >= least && digits.size() <= most && isHexadecimal(digits);
    }
    QString first(qsizetype count) const { return digits.first(count) + (isDirty ? QString(dirtySuffix) : QString()); }
};

QString commit(const QString &value)
{
    const Hash hash(value);
    return hash.isBetween(7, 64) ? hash.first(hash.digits.size()) : u"unknown"_s;
}

QString identifier(const QString &value, const QString &commit)
{
    if (const Hash own(value); own.isBetween(12, 12))
        return own.first(12);
    const Hash hash(commit);
    return hash.isBetween(12, 64) ? hash.first(12) : u"unknown"_s;
}

} // namespace

VeranoxAppVersion::VeranoxAppVersion(const QVariantMap &infoDictionary)
    : version(orUnknown(text(infoDictionary, u"CFBundleShortVersionString"_s))),
      buildNumber(orUnknown(text(infoDictionary, u"CFBundleVersion"_s))),
      buildCommit(commit(text(infoDictionary, u"VeranoxBuildCommit"_s, 70))),
      buildDate(orUnknown(text(infoDictionary, u"VeranoxBuildDate"_s, 64))),
      buildChannel(orUnknown(text(infoDictionary, u"VeranoxBuildChannel"_s, 32)))
{
    buildID = identifier(text(infoDictionary, u"VeranoxBuildID"_s, 18), buildCommit);
}
