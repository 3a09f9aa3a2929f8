#include "Log/VeranoxRuntimeLogEntry.h"
#include "Tests/Support/QtPrinters.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Entry = VeranoxRuntimeLogEntry;

const QUuid someID = QUuid::fromString(u"0f6b3c1e-9d2a-4e8b-8c11-5a7f00d1e2c3");
const QDateTime someTime = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);

Entry fullEntry()
{
    return {.id = someID,
        .timestamp = someTime,
        .profileName = u"work"_s,
        .message = u"[APP] Größe \"5\" \\ \t 🙂 level=info"_s,
        .schemaVersion = 2,
        .eventRedactionVersion = 1,
        .redactionVersion = 7,
        .sessionID = u"s"_s,
        .correlationID = u"c"_s,
        .requestID = u"r"_s,
        .componentInstanceID = u"i"_s,
        .configGenerationID = u"g"_s,
        .sequence = 42,
        .attempt = -3,
        .eventCode = u"app_session_started"_s,
        .level = u"info"_s,
        .component = u"macos_app"_s,
        .operation = u"save config"_s,
        .outcome = QString(u""_s),
        .failureStage = u"connect"_s,
        .retryable = false,
        .httpStatus = 503,
        .durationMS = std::numeric_limits<qint64>::max()};
}

QJsonObject asObject(const Entry &entry)
{
    return QJsonDocument::fromJson(entry.toJson()).object();
}

std::optional<Entry> decodedWith(const QString &key, const QJsonValue &value)
{
    QJsonObject object = asObject(fullEntry());
    object.insert(key, value);
    return Entry::fromJson(QJsonDocument(object).toJson());
}

TEST(LogEntry, WritesEveryFieldUnderItsKey)
{
    const QJsonObject expected{{u"id"_s, u"0f6b3c1e-9d2a-4e8b-8c11-5a7f00d1e2c3"_s},
        {u"timestamp"_s, qint64{1'700'000'000'123}}, {u"profileName"_s, u"work"_s},
        {u"message"_s, u"[APP] Größe \"5\" \\ \t 🙂 level=info"_s}, {u"schemaVersion"_s, 2},
        {u"eventRedactionVersion"_s, 1}, {u"redactionVersion"_s, 7}, {u"sessionID"_s, u"s"_s},
        {u"correlationID"_s, u"c"_s}, {u"requestID"_s, u"r"_s}, {u"componentInstanceID"_s, u"i"_s},
        {u"configGenerationID"_s, u"g"_s}, {u"sequence"_s, 42}, {u"attempt"_s, -3},
        {u"eventCode"_s, u"app_session_started"_s}, {u"level"_s, u"info"_s}, {u"component"_s, u"macos_app"_s},
        {u"operation"_s, u"save config"_s}, {u"outcome"_s, u""_s}, {u"failureStage"_s, u"connect"_s},
        {u"retryable"_s, false}, {u"httpStatus"_s, 503}, {u"durationMS"_s, std::numeric_limits<qint64>::max()}};
    EXPECT_EQ(asObject(fullEntry()), expected);
}

TEST(LogEntry, LeavesOutWhatIsAbsent)
{
    const Entry entry{.id = someID, .timestamp = someTime, .message = u"m"_s};
    EXPECT_EQ(asObject(entry).keys(), (QStringList{u"id"_s, u"message"_s, u"timestamp"_s}));
    EXPECT_EQ(Entry::fromJson(entry.toJson()), entry);
}

TEST(LogEntry, ComesBackAsItWent)
{
    EXPECT_EQ(Entry::fromJson(fullEntry().toJson()), fullEntry());
}

TEST(LogEntry, IsOneLineWhateverTheMessageHolds)
{
    Entry entry = fullEntry();
    entry.message = u"a\nb\rc\u2028d\0e\x1f"_s;
    EXPECT_FALSE(entry.toJson().contains('\n'));
    EXPECT_EQ(Entry::fromJson(entry.toJson()), entry);
}

TEST(LogEntry, SurvivesHalfASurrogatePair)
{
    Entry entry = fullEntry();
    entry.message = u"a"_s + QChar(0xD800) + u"b"_s;
    const auto decoded = Entry::fromJson(entry.toJson());
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->message.startsWith(u'a') && decoded->message.endsWith(u'b'));
}

TEST(LogEntry, NeedsIdTimestampAndMessage)
{
    for (const QString &key : {u"id"_s, u"timestamp"_s, u"message"_s}) {
        QJsonObject object = asObject(fullEntry());
        object.remove(key);
        EXPECT_FALSE(Entry::fromJson(QJsonDocument(object).toJson())) << qPrintable(key);
        EXPECT_FALSE(decodedWith(key, QJsonValue::Null)) << qPrintable(key);
    }
}

TEST(LogEntry, TakesNullAsAbsentAndPassesOverUnknownKeys)
{
    const auto decoded = decodedWith(u"level"_s, QJsonValue::Null);
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(decoded->level);
    EXPECT_EQ(decodedWith(u"colour"_s, QJsonObject{{u"id"_s, 1}}), fullEntry());
}

TEST(LogEntry, RefusesAWrongTypeInAnyField)
{
    const QJsonObject object = asObject(fullEntry());
    for (auto field = object.begin(); field != object.end(); ++field) {
        EXPECT_FALSE(decodedWith(field.key(), QJsonArray())) << qPrintable(field.key());
        EXPECT_FALSE(decodedWith(field.key(), QJsonObject())) << qPrintable(field.key());
        const QJsonValue other = field->isString() ? QJsonValue(1) : QJsonValue(u"1"_s);
        EXPECT_FALSE(decodedWith(field.key(), other)) << qPrintable(field.key());
    }
}

TEST(LogEntry, ReadsWholeNumbersHoweverTheyAreWritten)
{
    EXPECT_EQ(decodedWith(u"attempt"_s, 2.0).value_or(Entry()).attempt, 2);
    EXPECT_FALSE(decodedWith(u"attempt"_s, 2.5));
    EXPECT_FALSE(decodedWith(u"attempt"_s, 1e300));
    EXPECT_FALSE(decodedWith(u"retryable"_s, 0));
}

TEST(LogEntry, ReadsSequencesThatAreNotNegative)
{
    EXPECT_EQ(decodedWith(u"sequence"_s, 0).value_or(Entry()).sequence, 0U);
    EXPECT_EQ(decodedWith(u"sequence"_s, std::numeric_limits<qint64>::max()).value_or(Entry()).sequence,
        std::uint64_t{std::numeric_limits<qint64>::max()});
    EXPECT_FALSE(decodedWith(u"sequence"_s, -1));
    EXPECT_FALSE(decodedWith(u"sequence"_s, 1.5));
    EXPECT_FALSE(decodedWith(u"sequence"_s, 2e19));
}

TEST(LogEntry, KeepsSequencesBeyondTheSignedRangeUpToRounding)
{
    Entry entry = fullEntry();
    entry.sequence = std::uint64_t{3} << 62;
    EXPECT_EQ(Entry::fromJson(entry.toJson()), entry);
}

TEST(LogEntry, ReadsTimestampsWithFractions)
{
    EXPECT_EQ(decodedWith(u"timestamp"_s, 1'700'000'000'123.4).value_or(Entry()).timestamp, someTime);
    EXPECT_EQ(decodedWith(u"timestamp"_s, -1).value_or(Entry()).timestamp.toMSecsSinceEpoch(), -1);
    EXPECT_FALSE(decodedWith(u"timestamp"_s, 1e300));
}

TEST(LogEntry, ReadsOnlyTheCanonicalFormOfAnId)
{
    EXPECT_EQ(decodedWith(u"id"_s, u"0F6B3C1E-9D2A-4E8B-8C11-5A7F00D1E2C3"_s).value_or(Entry()).id, someID);
    EXPECT_TRUE(decodedWith(u"id"_s, u"00000000-0000-0000-0000-000000000000"_s));
    for (const QString &bad : {u""_s, u"x"_s, u"{0f6b3c1e-9d2a-4e8b-8c11-5a7f00d1e2c3}"_s,
             u"0f6b3c1e9d2a4e8b8c115a7f00d1e2c3"_s, u"0f6b3c1e-9d2a-4e8b-8c11-5a7f00d1e2c3 "_s})
        EXPECT_FALSE(decodedWith(u"id"_s, bad)) << qPrintable(bad);
}

TEST(LogEntry, RefusesWhatIsNoObject)
{
    for (const char *const bytes : {"", " ", "null", "[]", "7", "{", "{}", "\xff\xfe", "{\"id\":\"\xff\"}"})
        EXPECT_FALSE(Entry::fromJson(bytes)) << bytes;
    EXPECT_FALSE(Entry::fromJson(QByteArray(1'000'000, '[')));
}

} // namespace
