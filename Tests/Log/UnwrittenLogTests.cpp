#include "Log/VeranoxUnwrittenLog.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

VeranoxRuntimeLogEntry entry(const QString &message)
{
    return {.id = QUuid::createUuid(), .timestamp = QDateTime::currentDateTimeUtc(), .message = message};
}

VeranoxRuntimeLogEntry usualEntry(const QString &message)
{
    VeranoxRuntimeLogEntry made = entry(message);
    made.schemaVersion = VeranoxRuntimeLogEntry::currentSchemaVersion;
    made.eventRedactionVersion = VeranoxRuntimeLogEntry::currentRedactionVersion;
    made.sessionID = u"s"_s;
    made.componentInstanceID = u"i"_s;
    made.sequence = 1;
    made.component = u"system"_s;
    return made;
}

QList<VeranoxRuntimeLogEntry> takeAll(VeranoxUnwrittenLog &log)
{
    QList<VeranoxRuntimeLogEntry> all;
    while (!log.isEmpty())
        all.append(log.takeBatch());
    return all;
}

qsizetype bytesInFile(const QList<VeranoxRuntimeLogEntry> &entries)
{
    qsizetype bytes = 0;
    for (const VeranoxRuntimeLogEntry &entry : entries)
        bytes += entry.toJson().size() + 1;
    return bytes;
}

TEST(UnwrittenLog, HandsOutWhatCameFirstInBatches)
{
    VeranoxUnwrittenLog log;
    EXPECT_TRUE(log.takeBatch().isEmpty());
    for (int number = 0; number < 1'200; ++number)
        log.append(entry(QString::number(number)));
    EXPECT_EQ(log.size(), 1'200);
    for (const qsizetype expected : {500, 500, 200}) {
        const auto batch = log.takeBatch();
        EXPECT_EQ(batch.size(), expected);
    }
    EXPECT_TRUE(log.isEmpty());
    for (int number = 0; number < 3; ++number)
        log.append(entry(QString::number(number)));
    const auto batch = log.takeBatch();
    ASSERT_EQ(batch.size(), 3);
    EXPECT_EQ(batch.first().message, u"0"_s);
    EXPECT_EQ(batch.last().message, u"2"_s);
}

// What is given up would have been rotated away by what is kept: the files lose nothing by it.
TEST(UnwrittenLog, GivesUpOnlyWhatTheFilesWouldLoseAnyway)
{
    for (const QString &text : {u""_s, u"x"_s, u"ä"_s.repeated(200), u"🙂"_s.repeated(8'000)}) {
        VeranoxUnwrittenLog log;
        int appended = 0;
        while (log.size() == appended && appended < 100'000) {
            log.append(usualEntry(text));
            ++appended;
        }
        EXPECT_EQ(log.size(), appended - 1) << "nothing was given up";
        EXPECT_GE(bytesInFile(takeAll(log)), VeranoxUnwrittenLog::capacity);
    }
}

TEST(UnwrittenLog, StaysBoundedInAFloodAndKeepsTheNewest)
{
    VeranoxUnwrittenLog log;
    constexpr int flood = 200'000;
    for (int number = 0; number < flood; ++number)
        log.append(entry(QString::number(number)));
    EXPECT_LT(log.size(), 60'000);
    const auto kept = takeAll(log);
    for (qsizetype index = 0; index < kept.size(); ++index)
        ASSERT_EQ(kept[index].message, QString::number(flood - kept.size() + index));
}

TEST(UnwrittenLog, KeepsAnEntryHoweverLargeItIs)
{
    VeranoxUnwrittenLog log;
    log.append(entry(QString(VeranoxUnwrittenLog::capacity * 2, u'x')));
    EXPECT_EQ(log.size(), 1);
    log.append(entry(u"a"_s));
    EXPECT_EQ(log.size(), 2);
    log.append(entry(QString(VeranoxUnwrittenLog::capacity, u'y')));
    EXPECT_EQ(log.size(), 1);
    EXPECT_EQ(log.takeBatch().first().message.front(), u'y');
}

} // namespace
