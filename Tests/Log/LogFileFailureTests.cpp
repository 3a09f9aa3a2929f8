// Disks and folders that are not as they should be.
#include "Tests/Log/LogFileWorld.h"
#include <csignal>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

class LogFileFailure : public LogFileWorld {
protected:
    void expectError(const std::optional<QString> &error, const QString &part)
    {
        ASSERT_TRUE(error);
        EXPECT_TRUE(error->contains(part)) << qPrintable(*error);
    }
};

constexpr uid_t ordinaryUser = 65534;

// The rights of a user whom folders can refuse, for a test that runs as root.
class OrdinaryRights {
public:
    OrdinaryRights() { EXPECT_TRUE(m_before != 0 || ::seteuid(ordinaryUser) == 0); }
    ~OrdinaryRights() { EXPECT_EQ(::seteuid(m_before), 0); }
    OrdinaryRights(const OrdinaryRights &) = delete;
    OrdinaryRights &operator=(const OrdinaryRights &) = delete;

private:
    uid_t m_before = ::geteuid();
};

// Makes the user of OrdinaryRights the owner of what a test that runs as root has made.
class OrdinaryOwner {
public:
    explicit OrdinaryOwner(QStringList paths) : m_paths(std::move(paths)) { give(ordinaryUser); }
    ~OrdinaryOwner() { give(::geteuid()); }
    OrdinaryOwner(const OrdinaryOwner &) = delete;
    OrdinaryOwner &operator=(const OrdinaryOwner &) = delete;

private:
    void give(uid_t user)
    {
        for (const QString &path : std::as_const(m_paths))
            EXPECT_TRUE(::geteuid() != 0 || ::chown(QFile::encodeName(path).constData(), user, gid_t(-1)) == 0);
    }
    QStringList m_paths;
};

TEST_F(LogFileFailure, NeverWritesOrReadsThroughASymbolicLink)
{
    const QString target = home.filePath(u"target"_s);
    write(target, "mine\n");
    ::chmod(QFile::encodeName(target).constData(), 0644);
    QDir().mkpath(folder);
    QFile::link(target, path);
    open();
    expectError(append(entry(u"a"_s)), u"activity.jsonl” could not be opened: It is a symbolic link"_s);
    expectError(loadError(), u"It is a symbolic link"_s);
    EXPECT_EQ(content(target), "mine\n");
    EXPECT_EQ(mode(target), 0644U);
}

TEST_F(LogFileFailure, MakesNoFileThroughALinkThatLeadsNowhere)
{
    const QString target = home.filePath(u"target"_s);
    QDir().mkpath(folder);
    QFile::link(target, path);
    open();
    expectError(append(entry(u"a"_s)), u"It is a symbolic link"_s);
    EXPECT_FALSE(QFileInfo::exists(target));
}

TEST_F(LogFileFailure, DoesNotReadABackupThatIsALink)
{
    const QString target = home.filePath(u"target"_s);
    write(target, entry(u"foreign"_s).toJson());
    QDir().mkpath(folder);
    QFile::link(target, backup(1));
    open(1, 1);
    expectError(loadError(), u"activity.jsonl.1” could not be opened: It is a symbolic link"_s);
    EXPECT_EQ(append(entry(u"a"_s)), std::nullopt);
    EXPECT_EQ(append(entry(u"b"_s)), std::nullopt); // the link makes room, not what it leads to
    EXPECT_TRUE(content(target).contains("foreign"));
    EXPECT_EQ(messages(), (QStringList{u"a"_s, u"b"_s}));
}

TEST_F(LogFileFailure, DoesNotWaitAtAPipe)
{
    QDir().mkpath(folder);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    open();
    expectError(append(entry(u"a"_s)), u"could not be opened"_s);
    const int reader = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK);
    expectError(append(entry(u"a"_s)), u"It is not a regular file"_s);
    ::close(reader);
}

TEST_F(LogFileFailure, TellsOfAFolderThatIsSomebodyElses)
{
    QDir().mkpath(folder);
    ::chmod(QFile::encodeName(home.path()).constData(), 0755);
    ::chmod(QFile::encodeName(folder).constData(), 0777);
    open();
    {
        const OrdinaryRights rights;
        if (::geteuid() == QFileInfo(folder).ownerId())
            GTEST_SKIP() << "only root can be somebody else";
        expectError(append(entry(u"a"_s)), u"logs” could not be made private: Operation not permitted"_s);
        expectError(loadError(), u"could not be made private"_s);
    }
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(LogFileFailure, TellsOfAFolderInPlaceOfTheFile)
{
    QDir().mkpath(path);
    open();
    expectError(append(entry(u"a"_s)), u"could not be opened: Is a directory"_s);
}

TEST_F(LogFileFailure, TellsOfAFileInPlaceOfTheFolder)
{
    write(folder, "in the way");
    open();
    expectError(append(entry(u"a"_s)), u"logs” could not be opened: Not a directory"_s);
    expectError(loadError(), u"Not a directory"_s);
    EXPECT_EQ(content(folder), "in the way");
}

TEST_F(LogFileFailure, TellsOfAFileFurtherUpThePath)
{
    write(home.filePath(u"a"_s), "in the way");
    open();
    expectError(append(entry(u"a"_s)), u"could not be created: Not a directory"_s);
}

TEST_F(LogFileFailure, RecoversOnceTheObstacleIsGone)
{
    write(folder, "in the way");
    open();
    expectError(append(entry(u"a"_s)), u"Not a directory"_s);
    QFile::remove(folder);
    EXPECT_EQ(append(entry(u"b"_s)), std::nullopt);
    EXPECT_EQ(messages(), QStringList{u"b"_s});
}

TEST_F(LogFileFailure, TellsOfAFolderThatRefuses)
{
    ASSERT_TRUE(QDir(home.path()).mkdir(u"a"_s));
    const QByteArray refusing = QFile::encodeName(home.filePath(u"a"_s));
    ::chmod(QFile::encodeName(home.path()).constData(), 0755);
    ::chmod(refusing.constData(), 0555);
    open();
    {
        const OrdinaryRights rights;
        expectError(append(entry(u"a"_s)), u"a/b” could not be created: Permission denied"_s);
    }
    ::chmod(refusing.constData(), 0700);
    EXPECT_EQ(append(entry(u"b"_s)), std::nullopt);
}

TEST_F(LogFileFailure, GivesTheOwnerBackTheRightsThatAreMissing)
{
    write(path, "");
    write(backup(1), entry(u"old"_s).toJson() + '\n');
    const OrdinaryOwner owner({home.path(), home.filePath(u"a"_s), home.filePath(u"a/b"_s), folder, path, backup(1)});
    const QList<std::pair<mode_t, mode_t>> modes{
        {0700, 0400}, {0700, 0200}, {0700, 0000}, {0100, 0600}, {0300, 0600}, {0000, 0600}, {0000, 0000}};
    for (const bool loading : {false, true}) {
        for (const auto &[folderMode, fileMode] : modes) {
            ::chmod(QFile::encodeName(path).constData(), fileMode);
            ::chmod(QFile::encodeName(backup(1)).constData(), fileMode);
            ::chmod(QFile::encodeName(folder).constData(), folderMode);
            open();
            const OrdinaryRights rights;
            EXPECT_EQ(loading ? loadError() : append(entry(u"a"_s)), std::nullopt) << folderMode << ' ' << fileMode;
            EXPECT_EQ(mode(folder), 0700U);
            EXPECT_EQ(mode(path), 0600U);
        }
    }
    EXPECT_EQ(messages().size(), 1 + modes.size());
}

TEST_F(LogFileFailure, ChangesNoRightsOfWhatIsNoFile)
{
    QDir().mkpath(folder);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0000), 0);
    const OrdinaryOwner owner({home.path(), home.filePath(u"a"_s), home.filePath(u"a/b"_s), folder, path});
    open();
    {
        const OrdinaryRights rights;
        expectError(append(entry(u"a"_s)), u"activity.jsonl” could not be opened: Permission denied"_s);
    }
    EXPECT_EQ(mode(path), 0000U);
}

TEST_F(LogFileFailure, TellsOfAFileThatIsSomebodyElses)
{
    write(path, "");
    const OrdinaryOwner owner({home.path(), home.filePath(u"a"_s), home.filePath(u"a/b"_s), folder});
    ::chmod(QFile::encodeName(path).constData(), 0600);
    open();
    const OrdinaryRights rights;
    if (::geteuid() == QFileInfo(path).ownerId())
        GTEST_SKIP() << "only root can be somebody else";
    expectError(append(entry(u"a"_s)), u"activity.jsonl” could not be opened: Permission denied"_s);
}

TEST_F(LogFileFailure, TakesBackHalfALineThatCouldNotBeFinished)
{
    open();
    EXPECT_EQ(append(entryOfSize(1000)), std::nullopt);
    struct rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    auto *const handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit tight{.rlim_cur = 1500, .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    expectError(append(entryOfSize(1000)), u"activity.jsonl” could not be written: File too large"_s);
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(content(path).size(), 1000);
    EXPECT_EQ(append(entryOfSize(1000)), std::nullopt);
    EXPECT_EQ(messages().size(), 2);
}

// A small file system of its own, where the rights to mount one are given.
class LogOnSmallDisk : public LogFileFailure {
protected:
    void SetUp() override
    {
        QDir().mkpath(folder);
        m_mounted = ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=16k") == 0;
        if (!m_mounted)
            GTEST_SKIP() << "no right to mount a file system";
    }
    void TearDown() override
    {
        log.reset();
        if (m_mounted)
            ::umount(QFile::encodeName(folder).constData());
    }
    void makeReadOnly()
    {
        ASSERT_EQ(::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, ""), 0);
    }

private:
    bool m_mounted = false;
};

TEST_F(LogOnSmallDisk, LeavesTheFileWholeWhenTheDiskIsFull)
{
    open();
    EXPECT_EQ(append(entryOfSize(10'000)), std::nullopt);
    expectError(append(entryOfSize(10'000)), u"activity.jsonl” could not be written: No space left on device"_s);
    EXPECT_EQ(content(path).size(), 10'000); // no half line
    EXPECT_EQ(append(entryOfSize(200, u'y')), std::nullopt);
    EXPECT_EQ(messages().size(), 2);
}

TEST_F(LogOnSmallDisk, KeepsWhatStillFitsOfRecordsThatComeTogether)
{
    open();
    EXPECT_EQ(append({entryOfSize(10'000, u'a'), entryOfSize(10'000, u'b'), entryOfSize(200, u'c')}), std::nullopt);
    ASSERT_EQ(messages().size(), 2);
    EXPECT_EQ(messages().first().front(), u'a');
    EXPECT_EQ(messages().last().front(), u'c');
    expectError(append({entryOfSize(200, u'd'), entryOfSize(10'000, u'e')}), u"No space left on device"_s);
    EXPECT_EQ(messages().size(), 3);
}

TEST_F(LogOnSmallDisk, TellsOfADiskThatIsReadOnly)
{
    open();
    EXPECT_EQ(append(entry(u"a"_s)), std::nullopt);
    makeReadOnly();
    expectError(append(entry(u"b"_s)), u"Read-only file system"_s);
    expectError(loadError(), u"Read-only file system"_s);
}

} // namespace
