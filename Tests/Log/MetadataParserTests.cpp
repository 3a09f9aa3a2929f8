#include "Log/VeranoxRuntimeLogMetadataParser.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RandomText.h"
#include <QHash>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Parser = VeranoxRuntimeLogMetadataParser;
using Metadata = VeranoxRuntimeLogMetadata;

// What a field is, by definition.
const QRegularExpression &definition(const QString &name)
{
    static QHash<QString, QRegularExpression> compiled;
    QRegularExpression &pattern = compiled[name];
    if (pattern.pattern().isEmpty()) {
        const QString space = u"\\t-\\r\\x{85}\\p{Z}"_s;
        const QString form = u"(?:^|[%1])%2=(?:\"([^\"]*)\"|([^%1]+))"_s;
        pattern.setPattern(form.arg(space, QRegularExpression::escape(name)));
    }
    return pattern;
}

std::optional<QString> definedField(const QString &name, const QString &text)
{
    const QRegularExpressionMatch match = definition(name).match(text);
    if (!match.hasMatch())
        return std::nullopt;
    return match.hasCaptured(1) ? match.captured(1) : match.captured(2);
}

std::optional<qint64> definedInteger(const QString &name, const QString &text)
{
    const auto value = definedField(name, text);
    static const QRegularExpression form(u"\\A[+-]?[0-9]+\\z"_s);
    bool fits = false;
    const qint64 number = value && form.match(*value).hasMatch() ? value->toLongLong(&fits) : 0;
    return fits ? std::optional(number) : std::nullopt;
}

std::optional<bool> definedFlag(const QString &name, const QString &text)
{
    const QString value = definedField(name, text).value_or(QString()).toLower();
    return value == u"true" ? std::optional(true) : value == u"false" ? std::optional(false) : std::nullopt;
}

Metadata definedMetadata(const QString &text)
{
    auto level = definedField(u"level"_s, text);
    if (level)
        level = level->toLower();
    return {.sessionID = definedField(u"session_id"_s, text),
        .correlationID = definedField(u"correlation_id"_s, text),
        .requestID = definedField(u"request_id"_s, text),
        .componentInstanceID = definedField(u"component_instance_id"_s, text),
        .configGenerationID = definedField(u"config_generation"_s, text),
        .attempt = definedInteger(u"attempt"_s, text),
        .eventCode = definedField(u"event_code"_s, text),
        .level = level,
        .component = definedField(u"component"_s, text),
        .operation = definedField(u"operation"_s, text),
        .outcome = definedField(u"outcome"_s, text),
        .failureStage = definedField(u"failure_stage"_s, text),
        .retryable = definedFlag(u"retryable"_s, text),
        .httpStatus = definedInteger(u"http_status"_s, text),
        .durationMS = definedInteger(u"duration_ms"_s, text)};
}

const QStringList names{u"session_id"_s, u"correlation_id"_s, u"request_id"_s, u"component_instance_id"_s,
    u"config_generation"_s, u"attempt"_s, u"event_code"_s, u"level"_s, u"component"_s, u"operation"_s, u"outcome"_s,
    u"failure_stage"_s, u"retryable"_s, u"http_status"_s, u"duration_ms"_s};

TEST(LogMetadata, ReadsEveryKeyIntoItsField)
{
    const Metadata expected{.sessionID = u"s"_s,
        .correlationID = u"c"_s,
        .requestID = u"r"_s,
        .componentInstanceID = u"i"_s,
        .configGenerationID = u"g"_s,
        .attempt = 3,
        .eventCode = u"e"_s,
        .level = u"warn"_s,
        .component = u"Router"_s,
        .operation = u"save config"_s,
        .outcome = u"failed"_s,
        .failureStage = u"connect"_s,
        .retryable = true,
        .httpStatus = 503,
        .durationMS = -12};
    EXPECT_EQ(Parser::parse(u"[GUI] session_id=s correlation_id=c request_id=r component_instance_id=i "
                            "config_generation=g attempt=3 event_code=e level=WARN component=Router "
                            "operation=\"save config\" outcome=failed failure_stage=connect retryable=TRUE "
                            "http_status=+503 duration_ms=-12"),
        expected);
    EXPECT_EQ(Parser::parse(u"nothing of the kind"), Metadata());
    EXPECT_EQ(Parser::parse(u""), Metadata());
}

TEST(LogMetadata, ReadsBareAndQuotedValues)
{
    EXPECT_EQ(Parser::field(u"operation", u"operation=\"save config\" x"), u"save config"_s);
    EXPECT_EQ(Parser::field(u"outcome", u"outcome=\"\""), QString(u""_s));
    EXPECT_EQ(Parser::field(u"outcome", u"outcome=\"a\"b"), u"a"_s);
    EXPECT_EQ(Parser::field(u"outcome", u"outcome=\"open end"), u"\"open"_s);
    EXPECT_EQ(Parser::field(u"outcome", u"outcome=a=b\"c d"), u"a=b\"c"_s);
    EXPECT_EQ(Parser::field(u"outcome", u"outcome=a\u00a0b"), u"a"_s);
}

TEST(LogMetadata, NeedsAKeyOfItsOwn)
{
    EXPECT_EQ(Parser::field(u"session_id", u"xsession_id=1"), std::nullopt);
    EXPECT_EQ(Parser::field(u"session_id", u"\"session_id=1"), std::nullopt);
    EXPECT_EQ(Parser::field(u"session_id", u"Session_ID=1"), std::nullopt);
    EXPECT_EQ(Parser::field(u"session_id", u"xsession_id=1 session_id=2"), u"2"_s);
    EXPECT_EQ(Parser::field(u"a.b", u"axb=1 a.b=2"), u"2"_s);
    EXPECT_EQ(Parser::parse(u"xsession_id=1 \"session_id=1"), Metadata());
}

TEST(LogMetadata, PassesOverAKeyWithoutAValue)
{
    EXPECT_EQ(Parser::intField(u"http_status", u"http_status= 200"), std::nullopt);
    EXPECT_EQ(Parser::intField(u"http_status", u"http_status="), std::nullopt);
    EXPECT_EQ(Parser::intField(u"http_status", u"http_status= http_status=200"), 200);
    EXPECT_EQ(Parser::parse(u"http_status= 200"), Metadata());
}

TEST(LogMetadata, TakesTheFirstValueEvenWhereItCannotBeRead)
{
    EXPECT_EQ(Parser::parse(u"attempt=x attempt=2").attempt, std::nullopt);
    EXPECT_EQ(Parser::parse(u"level=info level=warn").level, u"info"_s);
    EXPECT_EQ(Parser::parse(u"operation=\"x level=Warn y\" level=info").level, u"warn"_s);
}

TEST(LogMetadata, ReadsDecimalIntegersOnly)
{
    const auto read = [](const QString &value) { return Parser::intField(u"n", u"n=\"%1\""_s.arg(value)); };
    EXPECT_EQ(read(u"0"_s), 0);
    EXPECT_EQ(read(u"007"_s), 7);
    EXPECT_EQ(read(u"+5"_s), 5);
    EXPECT_EQ(read(u"9223372036854775807"_s), std::numeric_limits<qint64>::max());
    EXPECT_EQ(read(u"-9223372036854775808"_s), std::numeric_limits<qint64>::min());
    for (const QString &bad : {u""_s, u"+"_s, u"-"_s, u"+-1"_s, u" 1"_s, u"1 "_s, u"1.0"_s, u"0x1"_s, u"1e3"_s, u"١"_s,
             u"9223372036854775808"_s, u"-9223372036854775809"_s, u"1,000"_s})
        EXPECT_EQ(read(bad), std::nullopt) << qPrintable(bad);
}

TEST(LogMetadata, ReadsTrueAndFalseInAnyCase)
{
    EXPECT_EQ(Parser::boolField(u"retryable", u"retryable=TRUE"), true);
    EXPECT_EQ(Parser::boolField(u"retryable", u"retryable=False"), false);
    EXPECT_EQ(Parser::boolField(u"retryable", u"retryable=yes"), std::nullopt);
    EXPECT_EQ(Parser::boolField(u"retryable", u"retryable=\"\""), std::nullopt);
}

TEST(LogMetadata, EqualsItsDefinitionForTextsOfAllSorts)
{
    const QStringList pieces = names
        + QStringList{u"="_s, u"="_s, u"="_s, u"\""_s, u"\""_s, u" "_s, u" "_s, u"\n"_s, u"\t"_s, u"\u00a0"_s,
            u"\u0085"_s, u"\u180e"_s, u"\u200b"_s, u"\u001f"_s, u"x"_s, u"_"_s, u"7"_s, u"-"_s, u"+1"_s, u"TRUE"_s,
            u"false"_s, u"Warn"_s, u"ä🙂"_s, u"99999999999999999999"_s, u"level=\""_s, u" attempt="_s};
    for (const QString &name : names)
        ASSERT_TRUE(definition(name).isValid());
    RandomText random(1);
    for (int round = 0; round < 10'000; ++round) {
        const QString text = random.of(pieces, 24);
        ASSERT_EQ(Parser::parse(text), definedMetadata(text)) << qPrintable(text);
        const QString &name = random.oneOf(names);
        ASSERT_EQ(Parser::field(name, text), definedField(name, text)) << qPrintable(text);
        ASSERT_EQ(Parser::intField(name, text), definedInteger(name, text)) << qPrintable(text);
        ASSERT_EQ(Parser::boolField(name, text), definedFlag(name, text)) << qPrintable(text);
    }
}

} // namespace
