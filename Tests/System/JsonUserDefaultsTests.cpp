#include "System/JsonUserDefaults.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

class JsonDefaults : public ::testing::Test {
protected:
    QString path() const { return folder.filePath(u"veranox/defaults.json"_s); }
    QByteArray content(const QString &file) const
    {
        QFile open(file);
        EXPECT_TRUE(open.open(QIODevice::ReadOnly)) << qPrintable(file);
        return open.readAll();
    }
    void put(const QByteArray &bytes)
    {
        QDir().mkpath(folder.filePath(u"veranox"_s));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QStringList files() const { return QDir(folder.filePath(u"veranox"_s)).entryList(QDir::Files); }

    QTemporaryDir folder;
};

} // namespace

TEST_F(JsonDefaults, keepsEachTypeOverARestart)
{
    JsonUserDefaults first(path());
    EXPECT_FALSE(first.value(u"a"_s).isValid());
    first.setValue(u"flag"_s, false);
    first.setValue(u"number"_s, qint64(4294967295));
    first.setValue(u"text"_s, u"⌥⌘,"_s);
    EXPECT_TRUE(first.problem().isEmpty());
    const JsonUserDefaults second(path());
    EXPECT_EQ(second.value(u"flag"_s), QVariant(false));
    EXPECT_EQ(second.value(u"number"_s), QVariant(qint64(4294967295)));
    EXPECT_EQ(second.value(u"text"_s), QVariant(u"⌥⌘,"_s));
    struct stat kept{};
    ASSERT_EQ(::stat(QFile::encodeName(path()).constData(), &kept), 0);
    EXPECT_EQ(kept.st_mode & 07777, 0600U);
}

TEST_F(JsonDefaults, keepsKeysThatItDoesNotKnow)
{
    put(R"({"other": [1, 2], "veranox.x": true})");
    JsonUserDefaults defaults(path());
    EXPECT_FALSE(defaults.value(u"other"_s).isValid());
    defaults.setValue(u"veranox.x"_s, false);
    EXPECT_TRUE(content(path()).contains("\"other\""));
}

TEST_F(JsonDefaults, setsADamagedFileAsideAndNeverEmptiesIt)
{
    const QList<QByteArray> damaged{"", "{\"a\": tr", "[1]", "\xff\xfe", QByteArray(2 * 1024 * 1024, ' ')};
    for (const QByteArray &bytes : damaged) {
        QDir(folder.filePath(u"veranox"_s)).removeRecursively();
        put(bytes);
        JsonUserDefaults defaults(path());
        EXPECT_FALSE(defaults.problem().isEmpty());
        ASSERT_EQ(files().size(), 1);
        EXPECT_TRUE(files().first().startsWith(u"defaults.json.damaged-"_s));
        EXPECT_EQ(content(folder.filePath(u"veranox/"_s + files().first())), bytes);
        defaults.setValue(u"a"_s, true);
        EXPECT_EQ(files().size(), 2);
        EXPECT_TRUE(defaults.problem().isEmpty());
    }
}

TEST_F(JsonDefaults, aFileOfMoreThanAMebibyteIsNotOurs)
{
    const QByteArray sound = "{\"a\": true}";
    const QByteArray largest = sound + QByteArray(1024 * 1024 - sound.size(), ' ');
    put(largest);
    EXPECT_EQ(JsonUserDefaults(path()).value(u"a"_s), QVariant(true));
    put(largest + ' ');
    const JsonUserDefaults defaults(path());
    EXPECT_FALSE(defaults.value(u"a"_s).isValid());
    EXPECT_TRUE(defaults.problem().contains(u"it is larger than 1 MiB"_s)) << qPrintable(defaults.problem());
}

TEST_F(JsonDefaults, doesNotWaitAtAPipe)
{
    QDir().mkpath(folder.filePath(u"veranox"_s));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    JsonUserDefaults defaults(path());
    const QString sentence = u"The settings in %1 cannot be read: It is not a regular file. The defaults apply, and "
                             "changes are not saved."_s.arg(path());
    EXPECT_EQ(defaults.problem(), sentence);
    defaults.setValue(u"a"_s, true);
    EXPECT_EQ(defaults.problem(), sentence);
    EXPECT_FALSE(QFileInfo(path()).isFile());
}

TEST_F(JsonDefaults, aFileThatMayNotBeReadIsLeftAsItIs)
{
    put("{\"a\": true}");
    ::chmod(QFile::encodeName(folder.path()).constData(), 0755);
    ::chmod(QFile::encodeName(folder.filePath(u"veranox"_s)).constData(), 0777);
    ::chmod(QFile::encodeName(path()).constData(), 0600);
    const uid_t before = ::geteuid();
    if (before != 0 || ::seteuid(65534) != 0)
        GTEST_SKIP() << "only root can be somebody else";
    JsonUserDefaults defaults(path());
    defaults.setValue(u"a"_s, false);
    ASSERT_EQ(::seteuid(before), 0);
    EXPECT_EQ(defaults.problem(),
        u"The settings in %1 cannot be read: Permission denied. The defaults apply, and "
        "changes are not saved."_s.arg(path()));
    EXPECT_EQ(content(path()), "{\"a\": true}");
}

TEST_F(JsonDefaults, aFolderInTheWayLosesNothingAndSaysSo)
{
    QDir().mkpath(path());
    JsonUserDefaults defaults(path());
    EXPECT_FALSE(defaults.problem().isEmpty());
    defaults.setValue(u"a"_s, true);
    EXPECT_EQ(defaults.value(u"a"_s), QVariant(true)); // for this run
    EXPECT_FALSE(defaults.problem().isEmpty());
    EXPECT_TRUE(QDir(path()).exists());
}
