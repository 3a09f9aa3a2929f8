#include "Log/VeranoxRuntimeLogDiscarder.h"
#include "Tests/Log/LogFileWorld.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using LogFile = LogFileWorld;

TEST_F(LogFile, KeepsEntriesAsJsonLinesInOrder)
{
    open();
    const auto first = entry(u"a"_s);
    const auto second = entry(u"b\nc"_s);
    EXPECT_EQ(append(first), std::nullopt);
    EXPECT_EQ(append(second), std::nullopt);
    EXPECT_EQ(content(path), first.toJson() + '\n' + second.toJson() + '\n');
    EXPECT_EQ(load(500), (QList{first, second}));
}

TEST_F(LogFile, MakesItsFolderAndFileForTheOwnerOnly)
{
    open();
    EXPECT_EQ(load(500), QList<VeranoxRuntimeLogEntry>());
    EXPECT_EQ(mode(folder), 0700U);
    EXPECT_EQ(mode(home.filePath(u"a/b"_s)), 0700U);
    EXPECT_EQ(mode(path), 0600U);
}

// Whatever a careless parent process has left as the mask of permissions.
TEST_F(LogFile, IsForTheOwnerOnlyUnderAnyMask)
{
    const mode_t before = ::umask(0);
    open(1, 2);
    const QStringList texts{u"a"_s, u"b"_s, u"c"_s};
    for (const QString &text : texts)
        EXPECT_EQ(append(entry(text)), std::nullopt);
    EXPECT_EQ(messages(), texts);
    ::umask(before);
    for (const QString &made : {home.filePath(u"a"_s), home.filePath(u"a/b"_s), folder})
        EXPECT_EQ(mode(made), 0700U) << qPrintable(made);
    for (const QString &made : {path, backup(1), backup(2)})
        EXPECT_EQ(mode(made), 0600U) << qPrintable(made);
}

TEST_F(LogFile, NarrowsPermissionsThatAreTooWide)
{
    write(path, "");
    for (const bool loading : {false, true}) {
        ::chmod(QFile::encodeName(folder).constData(), 0755);
        ::chmod(QFile::encodeName(path).constData(), 0666);
        open();
        EXPECT_EQ(loading ? loadError() : append(entry(u"a"_s)), std::nullopt);
        EXPECT_EQ(mode(folder), 0700U);
        EXPECT_EQ(mode(path), 0600U);
    }
}

TEST_F(LogFile, LoadsTheNewestOfAllFilesOldestFirst)
{
    QStringList expected;
    for (int number = 0; number < 1000; ++number) {
        const QString file = number < 200 ? backup(2) : number < 700 ? backup(1) : path;
        QDir().mkpath(folder);
        QFile writer(file);
        ASSERT_TRUE(writer.open(QIODevice::Append));
        writer.write(entry(QString::number(number)).toJson() + '\n');
        expected.append(QString::number(number));
    }
    open();
    EXPECT_EQ(messages(500), expected.last(500));
    EXPECT_EQ(messages(1), expected.last(1));
    EXPECT_EQ(messages(2000), expected);
}

TEST_F(LogFile, TouchesNothingForALimitBelowOne)
{
    open();
    EXPECT_EQ(load(0), QList<VeranoxRuntimeLogEntry>());
    EXPECT_EQ(load(-1), QList<VeranoxRuntimeLogEntry>());
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u"a"_s)));
}

TEST_F(LogFile, DoesNothingWithoutAFile)
{
    log = std::make_unique<VeranoxRuntimeLogFile>(world.queue, std::nullopt, 1, 1);
    EXPECT_EQ(log->fileURL(), std::nullopt);
    EXPECT_EQ(append(entry(u"a"_s)), std::nullopt);
    EXPECT_EQ(load(500), QList<VeranoxRuntimeLogEntry>());
}

TEST_F(LogFile, PassesOverLinesThatCannotBeRead)
{
    write(backup(1), "junk\n\n" + entry(u"a"_s).toJson() + "\n\xff\xfe\n");
    write(
        path, "{\"id\":1}\n\n\n" + entry(u"b"_s).toJson() + '\n' + entry(u"c"_s).toJson()); // the end of the line lost
    const QByteArray before = content(path);
    open();
    EXPECT_EQ(messages(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(messages(2), (QStringList{u"b"_s, u"c"_s}));
    EXPECT_EQ(content(path), before);
}

// Whatever byte a dying program came to: nothing is lost but that record and the one that is written behind it.
TEST_F(LogFile, LosesNoMoreThanTwoRecordsWhenKilledAtAnyByte)
{
    const QByteArray kept = entry(u"kept"_s).toJson() + '\n';
    const QByteArray last = entry(u"last ä🙂"_s).toJson() + '\n';
    for (qsizetype length = 0; length <= last.size(); ++length) {
        write(path, kept + last.first(length));
        open();
        const bool whole = length >= last.size() - 1; // only the line feed may be missing
        EXPECT_EQ(messages(), whole ? (QStringList{u"kept"_s, u"last ä🙂"_s}) : (QStringList{u"kept"_s})) << length;
        EXPECT_EQ(append(entry(u"behind"_s)), std::nullopt);
        EXPECT_EQ(append(entry(u"after"_s)), std::nullopt);
        QStringList expected{u"kept"_s};
        if (length == last.size())
            expected.append(u"last ä🙂"_s);
        if (length == 0 || length == last.size())
            expected.append(u"behind"_s);
        expected.append(u"after"_s);
        EXPECT_EQ(messages(), expected) << length;
    }
}

// Records that go to the disk in one write are no worse off: those that are whole load again.
TEST_F(LogFile, LosesOnlyWhatWasNotWrittenWhenKilledWithinAWriteOfSeveralRecords)
{
    open();
    EXPECT_EQ(append({entry(u"a"_s), entry(u"b ä🙂"_s), entry(u"c"_s)}), std::nullopt);
    const QByteArray written = content(path);
    for (qsizetype length = 0; length <= written.size(); ++length) {
        write(path, written.first(length));
        // A record of which only the line feed is missing is whole.
        const qsizetype whole = (written.first(length) + '\n').count("}\n");
        ASSERT_EQ(messages(), (QStringList{u"a"_s, u"b ä🙂"_s, u"c"_s}).first(whole)) << length;
        EXPECT_EQ(append({entry(u"behind"_s), entry(u"after"_s)}), std::nullopt);
        ASSERT_EQ(messages().last(), u"after"_s) << length;
    }
}

TEST_F(LogFile, ServesCallsInTheirOrder)
{
    open();
    for (int number = 0; number < 200; ++number)
        jobs.start(log->append({entry(QString::number(number))}));
    const QStringList texts = messages();
    ASSERT_EQ(texts.size(), 200);
    for (int number = 0; number < 200; ++number)
        EXPECT_EQ(texts[number], QString::number(number));
}

TEST_F(LogFile, FindsItsFileAgainWhenOthersMoveOrDeleteIt)
{
    open();
    EXPECT_EQ(append(entry(u"a"_s)), std::nullopt);
    QFile::rename(path, folder + u"/elsewhere"_s);
    EXPECT_EQ(append(entry(u"b"_s)), std::nullopt);
    EXPECT_EQ(messages(), QStringList{u"b"_s});
    QDir(home.filePath(u"a"_s)).removeRecursively();
    EXPECT_EQ(append(entry(u"c"_s)), std::nullopt);
    EXPECT_EQ(messages(), QStringList{u"c"_s});
}

TEST_F(LogFile, FinishesTheCallsMadeSoFarWhenItGoes)
{
    open();
    jobs.start(log->append({entry(u"a"_s)}));
    world.queue.settle();
    log.reset();
    open();
    EXPECT_EQ(messages(), QStringList{u"a"_s});
}

// A variable of the environment for the length of a test.
class Variable {
public:
    Variable(const char *name, const QByteArray &value) : m_name(name), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Variable() { m_before.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_before); }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *m_name;
    QByteArray m_before;
};

TEST(LogDefaultFile, LiesInTheFolderForApplicationData)
{
    const Variable home("HOME", "/home/somebody");
    {
        const Variable data("XDG_DATA_HOME", "/data/of somebody");
        EXPECT_EQ(VeranoxRuntimeLogFile::defaultFileURL(), u"/data/of somebody/Veranox/logs/activity.jsonl"_s);
    }
    const Variable none("XDG_DATA_HOME", "");
    EXPECT_EQ(VeranoxRuntimeLogFile::defaultFileURL(), u"/home/somebody/.local/share/Veranox/logs/activity.jsonl"_s);
}

TEST_F(LogFile, LoadsFilesOfAnySizeWhole)
{
    QStringList expected;
    QByteArray bytes;
    while (bytes.size() < VeranoxRuntimeLogFile::defaultMaxBytes) {
        expected.append(QString::number(expected.size()) + u' ' + QString(5'000, u'x'));
        bytes += entry(expected.last()).toJson() + '\n';
    }
    write(backup(1), bytes);
    write(path, bytes);
    open();
    EXPECT_EQ(messages(10'000), expected + expected);
}

TEST_F(LogFile, LoadsOnlyTheEndOfAFileThatIsFarTooLarge)
{
    write(path, entry(u"lost"_s).toJson() + '\n');
    ASSERT_TRUE(QFile::resize(path, qint64{70} << 20));
    QFile writer(path);
    ASSERT_TRUE(writer.open(QIODevice::Append));
    writer.write('\n' + entry(u"kept"_s).toJson() + '\n');
    writer.close();
    open();
    EXPECT_EQ(messages(), QStringList{u"kept"_s});
}

class LogDiscarder : public LogFileWorld {
protected:
    static jobs::Async<> keep(VeranoxRuntimeLogDiscarder *discarder, QList<VeranoxRuntimeLogEntry> entries)
    {
        co_await discarder->append(std::move(entries));
    }
    static jobs::Async<> load(VeranoxRuntimeLogDiscarder *discarder, std::optional<qsizetype> *count)
    {
        *count = (co_await discarder->loadRecent(500)).size();
    }
};

TEST_F(LogDiscarder, KeepsNothing)
{
    VeranoxRuntimeLogDiscarder discarder(path);
    EXPECT_EQ(discarder.fileURL(), path);
    EXPECT_EQ(VeranoxRuntimeLogDiscarder().fileURL(), std::nullopt);
    const auto appended = jobs.start(keep(&discarder, {entry(u"a"_s)}));
    world.run();
    EXPECT_TRUE(appended.finished());
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u"a"_s)));
    write(path, entry(u"of somebody else"_s).toJson() + '\n');
    std::optional<qsizetype> count;
    jobs.start(load(&discarder, &count));
    world.run();
    EXPECT_EQ(count, 0);
}

} // namespace
