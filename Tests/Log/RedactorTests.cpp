#include "Log/VeranoxRuntimeLogRedactor.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RandomText.h"
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString redact(const QString &text)
{
    return VeranoxRuntimeLogRedactor::redact(text);
}

struct DefinedRule {
    QRegularExpression pattern;
    QString replacement;
};

// What redacting is, by definition.
const QList<DefinedRule> &definition()
{
    const auto rule = [](const QString &pattern, const QString &replacement, bool anyCase) {
        return DefinedRule{
            QRegularExpression(QString(pattern).replace(u"{space}"_s, u"\\t-\\r\\x{85}\\p{Z}"_s),
                anyCase ? QRegularExpression::CaseInsensitiveOption : QRegularExpression::NoPatternOption),
            replacement};
    };
    static const QList<DefinedRule> rules{
        rule(u"(X-Veranox-Token|control[_ -]?token|machine[_ -]?id)([\"'=:{space}]+)[0-9a-f-]{16,}"_s,
            u"\\1\\2[REDACTED]"_s, true),
        rule(u"https://login\\.tailscale\\.com/a/[A-Za-z0-9_-]+"_s, u"[TAILSCALE AUTH URL REDACTED]"_s, false),
        rule(u"([?&](?:token|key|auth)=)[^&{space}]+"_s, u"\\1[REDACTED]"_s, true),
        rule(u"(?m)(^|[{space}])redaction_version="_s, u"\\1event_redaction_version="_s, false)};
    return rules;
}

QString definedRedaction(QString text)
{
    for (const DefinedRule &rule : definition())
        text.replace(rule.pattern, rule.replacement);
    return text;
}

const QString secret = u"0123456789abcdef"_s;

TEST(LogRedactor, RemovesSecretsBehindEveryFormOfTheirNames)
{
    for (const QString &name : {u"X-Veranox-Token"_s, u"controltoken"_s, u"control_token"_s, u"control-token"_s,
             u"control token"_s, u"machineid"_s, u"machine_id"_s, u"machine-id"_s, u"machine id"_s}) {
        for (const QString &between : {u"="_s, u":"_s, u" "_s, u"\""_s, u"'"_s, u"\": \""_s, u"\u00a0=\t"_s}) {
            for (const QString &written : {name, name.toUpper()})
                EXPECT_EQ(redact(u"<"_s + written + between + secret + u">"_s),
                    u"<"_s + written + between + u"[REDACTED]>"_s);
        }
    }
}

TEST(LogRedactor, RemovesSecretsOfSixteenCharactersAndMore)
{
    EXPECT_EQ(redact(u"control_token=0123456789abcde"_s), u"control_token=0123456789abcde"_s);
    EXPECT_EQ(redact(u"control_token=0123456789abcdef"_s), u"control_token=[REDACTED]"_s);
    EXPECT_EQ(redact(u"control_token="_s + QString(100'000, u'F')), u"control_token=[REDACTED]"_s);
    EXPECT_EQ(redact(u"machine_id=0f6b3c1e-9d2a-4e8b-8c11-5A7F00D1E2C3, x"_s), u"machine_id=[REDACTED], x"_s);
}

TEST(LogRedactor, LeavesWhatOnlyLooksLikeASecret)
{
    for (const QString &text :
        {u"session_id=0f6b3c1e-9d2a-4e8b-8c11-5a7f00d1e2c3"_s, u"control__token=0123456789abcdef"_s,
            u"control_token0123456789abcdef"_s, u"control_token=<0123456789abcdef"_s,
            u"control_token=0123456g789abcdef0"_s, u"control\ttoken=0123456789abcdef"_s})
        EXPECT_EQ(redact(text), text);
}

TEST(LogRedactor, RemovesLoginAddresses)
{
    EXPECT_EQ(redact(u"go to https://login.tailscale.com/a/1b2_C-3?x"_s), u"go to [TAILSCALE AUTH URL REDACTED]?x"_s);
    for (const QString &text : {u"https://login.tailscale.com/a/"_s, u"https://login.tailscale.com/b/1"_s,
             u"https://LOGIN.tailscale.com/a/1"_s, u"https://loginxtailscale.com/a/1"_s,
             u"http://login.tailscale.com/a/1"_s})
        EXPECT_EQ(redact(text), text);
}

TEST(LogRedactor, RemovesSecretsOfQueries)
{
    EXPECT_EQ(redact(u"?token=abc&x=1"_s), u"?token=[REDACTED]&x=1"_s);
    EXPECT_EQ(redact(u"/p?x=1&KEY=a/b?c=\"d\" end"_s), u"/p?x=1&KEY=[REDACTED] end"_s);
    EXPECT_EQ(redact(u"?auth=ä&token=b&key="_s), u"?auth=[REDACTED]&token=[REDACTED]&key="_s);
    for (const QString &text : {u"token=abc"_s, u"?tokens=abc"_s, u"?xtoken=abc"_s, u"?token =abc"_s})
        EXPECT_EQ(redact(text), text);
}

TEST(LogRedactor, RenamesTheVersionOfOthers)
{
    EXPECT_EQ(redact(u"redaction_version=3"_s), u"event_redaction_version=3"_s);
    EXPECT_EQ(redact(u"a redaction_version=3\nredaction_version=4"_s),
        u"a event_redaction_version=3\nevent_redaction_version=4"_s);
    for (const QString &text : {u"event_redaction_version=3"_s, u"\"redaction_version=3"_s, u"redaction_version 3"_s})
        EXPECT_EQ(redact(text), text);
}

TEST(LogRedactor, LeavesEmptyAndPlainTexts)
{
    EXPECT_EQ(redact(QString()), QString());
    EXPECT_EQ(redact(u"[GUI] listening on 127.0.0.1:43200"_s), u"[GUI] listening on 127.0.0.1:43200"_s);
}

TEST(LogRedactor, IsNotPutOffByHalfASurrogatePair)
{
    const QString redacted = redact(QChar(0xDC00) + u"?token=abc control_token="_s + secret + QChar(0xD800));
    EXPECT_FALSE(redacted.contains(u"abc"_s));
    EXPECT_FALSE(redacted.contains(secret));
    EXPECT_TRUE(redacted.isValidUtf16());
    EXPECT_EQ(redact(u"a"_s + QChar(0xD83D) + u"b\U0001F469"_s), u"a?b\U0001F469"_s);
}

TEST(LogRedactor, SeesThroughLettersThatFoldToAsciiOnes)
{
    EXPECT_EQ(redact(u"control_to\u212aen="_s + secret), u"control_to\u212aen=[REDACTED]"_s);
    EXPECT_EQ(redact(u"?to\u212aen=abc"_s), u"?to\u212aen=[REDACTED]"_s);
}

TEST(LogRedactor, StaysLinearInHostileTexts)
{
    const QString separators = u"control_token"_s + QString(500'000, u'=');
    EXPECT_EQ(redact(separators + u'x'), separators + u'x');
    const QString names = u"control_token=0123456789abcde "_s.repeated(20'000);
    EXPECT_EQ(redact(names), names);
    const QString queries = u"?token"_s.repeated(100'000);
    EXPECT_EQ(redact(queries), queries);
}

const QStringList pieces{u"X-Veranox-Token"_s, u"control"_s, u"token"_s, u"machine"_s, u"id"_s, u"_"_s, u"-"_s, u" "_s,
    u"="_s, u":"_s, u"'"_s, u"\""_s, u"0123456789abcdef"_s, u"0123456"_s, u"ABCDEF-01"_s, u"?"_s, u"&"_s, u"key"_s,
    u"AUTH="_s, u"?token="_s, u"\n"_s, u"\r"_s, u"\u2028"_s, u"\u00a0"_s, u"\u180e"_s, u"redaction_version="_s,
    u"[REDACTED]"_s, u"https://login.tailscale.com/a/"_s, u"ä"_s, u"🙂"_s, u"x"_s, u"to\u212aen"_s,
    u"control_token="_s};

TEST(LogRedactor, EqualsItsDefinitionForTextsOfAllSorts)
{
    for (const DefinedRule &rule : definition())
        ASSERT_TRUE(rule.pattern.isValid());
    RandomText random(3);
    int changed = 0;
    for (int round = 0; round < 20'000; ++round) {
        const QString text = random.of(pieces, 20);
        const QString redacted = redact(text);
        ASSERT_EQ(redacted, definedRedaction(text)) << qPrintable(text);
        changed += redacted != text;
    }
    EXPECT_GT(changed, 2000);
}

TEST(LogRedactor, ChangesNothingTheSecondTime)
{
    RandomText random(4);
    for (int round = 0; round < 20'000; ++round) {
        const QString redacted = redact(random.of(pieces, 20));
        ASSERT_EQ(redact(redacted), redacted);
    }
}

TEST(LogRedactor, LetsNoSecretSurviveInAnyText)
{
    const QStringList names{u"X-Veranox-Token"_s, u"x-veranox-token"_s, u"control_token"_s, u"Control Token"_s,
        u"CONTROL-TOKEN"_s, u"controltoken"_s, u"machine_id"_s, u"machine id"_s, u"Machine-ID"_s, u"machineid"_s};
    const QStringList separators{u"="_s, u":"_s, u"\""_s, u"'"_s, u" "_s, u"\t"_s, u"\u2003"_s};
    const QStringList hexadecimal{u"c0ffee"_s, u"1"_s, u"-"_s, u"BADF00D"_s, u"9a"_s};
    RandomText random(5);
    for (int round = 0; round < 10'000; ++round) {
        const QString value = u"d15ea5e0deadbeef"_s + random.of(hexadecimal, 8);
        QString carrier;
        switch (random.below(3)) {
        case 0:
            carrier = random.oneOf(names) + random.oneOf(separators) + random.of(separators, 3) + value;
            break;
        case 1:
            carrier = u"https://login.tailscale.com/a/"_s + value;
            break;
        default:
            carrier = random.oneOf({u"?"_s, u"&"_s}) + random.oneOf({u"token="_s, u"KEY="_s, u"Auth="_s}) + value;
        }
        const QString text = random.of(pieces, 8) + u' ' + carrier + u' ' + random.of(pieces, 8);
        ASSERT_FALSE(redact(text).contains(u"d15ea5e0deadbeef"_s)) << qPrintable(text);
    }
}

} // namespace
