#include "System/VeranoxAppVersion.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

VeranoxAppVersion of(const QString &key, const QVariant &value)
{
    return VeranoxAppVersion({{key, value}});
}

const QString commitKey = u"VeranoxBuildCommit"_s;
const QString idKey = u"VeranoxBuildID"_s;

} // namespace

TEST(AppVersion, isUnknownThroughoutWithoutADictionary)
{
    const VeranoxAppVersion version((QVariantMap()));
    for (const QString &value : {version.version, version.buildNumber, version.buildID, version.buildCommit,
             version.buildDate, version.buildChannel})
        EXPECT_EQ(value, u"unknown"_s);
}

TEST(AppVersion, trimsItsTextsAndIgnoresWhatIsNoText)
{
    EXPECT_EQ(of(u"CFBundleShortVersionString"_s, u" 1.2 \n"_s).version, u"1.2"_s);
    EXPECT_EQ(of(u"CFBundleShortVersionString"_s, u"  "_s).version, u"unknown"_s);
    EXPECT_EQ(of(u"CFBundleShortVersionString"_s, 12).version, u"unknown"_s);
    EXPECT_EQ(of(u"CFBundleVersion"_s, u"77"_s).buildNumber, u"77"_s);
}

TEST(AppVersion, validatesTheCommit)
{
    const QString sixtyFour(64, u'a');
    const QList<std::pair<QString, QString>> rows{
        {u"ABCDEF1234"_s, u"abcdef1234"_s},
        {u"abcdef1"_s, u"abcdef1"_s},
        {u"abcdef"_s, u"unknown"_s},
        {u"abc"_s, u"unknown"_s},
        {u"abcdefg"_s, u"unknown"_s},
        {u"ABCDEF1-Dirty"_s, u"abcdef1-dirty"_s},
        {u"abcdef-dirty"_s, u"unknown"_s},
        {sixtyFour, sixtyFour},
        {sixtyFour + u"-dirty"_s, sixtyFour + u"-dirty"_s},
        {sixtyFour + u"a"_s, u"unknown"_s},
        {sixtyFour + u"a-dirty"_s, u"unknown"_s}, // 71 characters: over the limit
        {u"١٢٣٤٥٦٧"_s, u"unknown"_s},
    };
    for (const auto &[given, expected] : rows)
        EXPECT_EQ(of(commitKey, given).buildCommit, expected) << qPrintable(given);
}

TEST(AppVersion, takesTheIdentifierOrDerivesIt)
{
    struct Row {
        QString id, commit, expected;
    };
    const QList<Row> rows{
        {u"ABCDEF123456"_s, {}, u"abcdef123456"_s},
        {u"abcdef123456-dirty"_s, {}, u"abcdef123456-dirty"_s},
        {u"abcdef12345"_s, {}, u"unknown"_s},
        {u"abcdef1234567"_s, u"0123456789abcdef"_s, u"0123456789ab"_s},
        {u"abcdef123456-dirty "_s, {}, u"abcdef123456-dirty"_s},
        {u"abcdef1234567-dirty"_s, u"fedcba9876543210"_s, u"fedcba987654"_s},
        {{}, u"abcdef123456789-dirty"_s, u"abcdef123456-dirty"_s},
        {{}, u"abcdef12345"_s, u"unknown"_s}, // a valid commit, too short to derive from
        {{}, u"abcdef12345-dirty"_s, u"unknown"_s},
        {{}, u"abcdef123456"_s, u"abcdef123456"_s},
        {{}, {}, u"unknown"_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ(VeranoxAppVersion({{idKey, row.id}, {commitKey, row.commit}}).buildID, row.expected)
            << qPrintable(row.id + u'/' + row.commit);
}

TEST(AppVersion, limitsDateAndChannel)
{
    EXPECT_EQ(of(u"VeranoxBuildDate"_s, QString(64, u'9')).buildDate, QString(64, u'9'));
    EXPECT_EQ(of(u"VeranoxBuildDate"_s, QString(65, u'9')).buildDate, u"unknown"_s);
    EXPECT_EQ(of(u"VeranoxBuildChannel"_s, QString(32, u'c')).buildChannel, QString(32, u'c'));
    EXPECT_EQ(of(u"VeranoxBuildChannel"_s, QString(33, u'c')).buildChannel, u"unknown"_s);
}

TEST(AppVersion, limitsCharactersAsAPersonCountsThem)
{
    for (const QString &character : {u"e\u0301"_s, u"🙂"_s, u"🇩🇪"_s}) {
        const QString date = character.repeated(64);
        EXPECT_EQ(of(u"VeranoxBuildDate"_s, date).buildDate, date);
        EXPECT_EQ(of(u"VeranoxBuildDate"_s, date + u'x').buildDate, u"unknown"_s);
        const QString channel = character.repeated(32);
        EXPECT_EQ(of(u"VeranoxBuildChannel"_s, channel).buildChannel, channel);
        EXPECT_EQ(of(u"VeranoxBuildChannel"_s, channel + character).buildChannel, u"unknown"_s);
    }
}
