#include "Tests/Log/LogFileWorld.h"
#include "Tests/Support/RandomText.h"

using namespace Qt::StringLiterals;

namespace {

using LogRotation = LogFileWorld;

TEST_F(LogRotation, MovesTheFileAsideBeforeItWouldGrowBeyondItsSize)
{
    const QByteArray old = QByteArray(2'097'099, 'o') + '\n';
    write(path, old);
    open(VeranoxRuntimeLogFile::defaultMaxBytes, VeranoxRuntimeLogFile::defaultBackupCount);
    const auto record = entryOfSize(100);
    EXPECT_EQ(append(record), std::nullopt);
    EXPECT_EQ(content(path), record.toJson() + '\n');
    EXPECT_EQ(content(backup(1)), old);
    EXPECT_EQ(mode(path), 0600U);
}

TEST_F(LogRotation, FillsAFileToItsSizeExactly)
{
    open(300);
    EXPECT_EQ(append(entryOfSize(150)), std::nullopt);
    EXPECT_EQ(append(entryOfSize(150)), std::nullopt);
    EXPECT_EQ(content(path).size(), 300);
    EXPECT_FALSE(QFileInfo::exists(backup(1)));
    EXPECT_EQ(append(entryOfSize(150)), std::nullopt);
    EXPECT_EQ(content(path).size(), 150);
    EXPECT_EQ(content(backup(1)).size(), 300);
}

TEST_F(LogRotation, GivesAnOversizedRecordAFileOfItsOwn)
{
    open(200);
    EXPECT_EQ(append(entryOfSize(1000)), std::nullopt);
    EXPECT_EQ(content(path).size(), 1000);
    EXPECT_FALSE(QFileInfo::exists(backup(1)));
    EXPECT_EQ(append(entryOfSize(150)), std::nullopt);
    EXPECT_EQ(content(backup(1)).size(), 1000);
}

TEST_F(LogRotation, DeletesTheOldestOfTheBackups)
{
    open(1, 3); // every record after the first one rotates
    for (const QString &text : {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s})
        EXPECT_EQ(append(entry(text)), std::nullopt);
    EXPECT_TRUE(content(backup(3)).contains("\"b\""));
    EXPECT_TRUE(content(backup(2)).contains("\"c\""));
    EXPECT_TRUE(content(backup(1)).contains("\"d\""));
    EXPECT_TRUE(content(path).contains("\"e\""));
    EXPECT_FALSE(QFileInfo::exists(backup(4)));
    EXPECT_EQ(messages(), (QStringList{u"b"_s, u"c"_s, u"d"_s, u"e"_s}));
}

TEST_F(LogRotation, PassesOverBackupsThatDoNotExist)
{
    write(backup(2), "old\n");
    write(path, "active\n");
    open(1, 3);
    EXPECT_EQ(append(entry(u"a"_s)), std::nullopt);
    EXPECT_EQ(content(backup(3)), "old\n");
    EXPECT_FALSE(QFileInfo::exists(backup(2)));
    EXPECT_EQ(content(backup(1)), "active\n");
}

TEST_F(LogRotation, RaisesLimitsThatAreTooLow)
{
    open(0, -1);
    EXPECT_EQ(append(entry(u"a"_s)), std::nullopt);
    EXPECT_EQ(append(entry(u"b"_s)), std::nullopt);
    EXPECT_EQ(messages(), QStringList{u"b"_s});
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), QStringList{u"activity.jsonl"_s});
}

// However many records come at once, the files are those of one record after the other.
TEST_F(LogRotation, TreatsRecordsThatComeTogetherLikeThoseThatComeAlone)
{
    RandomText random(6);
    for (int round = 0; round < 60; ++round) {
        QList<VeranoxRuntimeLogEntry> entries;
        for (int left = random.below(40); left > 0; --left)
            entries.append(entryOfSize(random.below(10) == 0 ? 1'500 : 120 + random.below(300)));
        const auto filesAfter = [&](bool together) {
            QDir(folder).removeRecursively();
            open(1'000, 2);
            for (const auto &entry : entries) {
                if (!together)
                    EXPECT_EQ(append(entry), std::nullopt);
            }
            if (together)
                EXPECT_EQ(append(entries), std::nullopt);
            return QByteArrayList{content(backup(2)), content(backup(1)), content(path)};
        };
        const QByteArrayList alone = filesAfter(false);
        ASSERT_EQ(filesAfter(true), alone) << round;
    }
}

TEST_F(LogRotation, StopsAtTheFirstFailureAndGoesOnWithTheNextRecord)
{
    write(backup(1), "one\n");
    write(path, "active\n");
    QDir().mkpath(backup(2) + u"/in the way"_s);
    open(1, 2);
    const auto error = append(entry(u"lost"_s));
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->contains(u"activity.jsonl.2” could not be deleted: "_s)) << qPrintable(*error);
    EXPECT_EQ(content(path), "active\n");
    EXPECT_EQ(content(backup(1)), "one\n");

    QDir(backup(2)).removeRecursively();
    EXPECT_EQ(append(entry(u"kept"_s)), std::nullopt);
    EXPECT_EQ(content(backup(2)), "one\n");
    EXPECT_EQ(content(backup(1)), "active\n");
    EXPECT_EQ(messages(), QStringList{u"kept"_s});
}

} // namespace
