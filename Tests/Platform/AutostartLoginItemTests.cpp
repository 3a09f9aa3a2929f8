#include "Platform/Linux/AutostartLoginItem.h"
#include "Tests/Support/EnvironmentVariable.h"
#include "Tests/Support/QtPrinters.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

// The exit status of a program with one argument; -1 when it did not run. QProcess clones in a way that the thread
// sanitizer cannot follow.
int statusOf(QByteArray program, QByteArray argument)
{
    char *const arguments[] = {program.data(), argument.data(), nullptr};
    pid_t process = 0;
    if (::posix_spawnp(&process, program.constData(), nullptr, nullptr, arguments, environ) != 0)
        return -1;
    int status = 0;
    return ::waitpid(process, &status, 0) == process && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class Autostart : public ::testing::Test {
protected:
    QString path() const { return folder.filePath(u"autostart/veranox.desktop"_s); }
    QByteArray entry() const
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir folder;
    AutostartLoginItem item{path(), u"/opt/my \"tools\"/100%/veranox-menu"_s};
};

} // namespace

TEST_F(Autostart, writesAnEntryThatTheDesktopAcceptsAndTakesItAway)
{
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.add());
    EXPECT_TRUE(item.isEnabled());
    EXPECT_TRUE(entry().contains("Exec=\"/opt/my \\\\\"tools\\\\\"/100%%/veranox-menu\"\n")) << entry().constData();
    EXPECT_EQ(statusOf("desktop-file-validate", path().toLocal8Bit()), 0);
    EXPECT_TRUE(item.remove());
    EXPECT_FALSE(QFile::exists(path()));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.remove());
}

TEST_F(Autostart, anEntryThatThePersonSwitchedOffCountsAsOff)
{
    for (const QByteArray &line : {"Hidden=true", "X-GNOME-Autostart-enabled=false"}) {
        ASSERT_TRUE(item.add());
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(line + '\n');
        file.close();
        EXPECT_FALSE(item.isEnabled()) << line.constData();
        ASSERT_TRUE(item.add()); // switching it on again replaces it
        EXPECT_TRUE(item.isEnabled());
    }
}

TEST_F(Autostart, aPipeInTheWayIsNotWaitedFor)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path()).path()));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.add());
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(Autostart, aFolderInTheWayIsAFinishedSentence)
{
    ASSERT_TRUE(QDir().mkpath(path() + u"/x"_s));
    const auto added = item.add();
    ASSERT_FALSE(added);
    EXPECT_TRUE(added.error().startsWith(u"Launch at login could not be switched on: "_s)) << qPrintable(added.error());
    EXPECT_TRUE(added.error().endsWith(u'.'));
    const auto removed = item.remove();
    ASSERT_FALSE(removed);
    EXPECT_TRUE(removed.error().startsWith(u"Launch at login could not be switched off: "_s));
}

TEST(AutostartEntryPath, liesInTheFolderForConfigurationForWhichARelativeOneIsIgnored)
{
    const EnvironmentVariable home("HOME", "/home/somebody");
    {
        const EnvironmentVariable named("XDG_CONFIG_HOME", "/c");
        EXPECT_EQ(AutostartLoginItem::defaultEntryPath(), u"/c/autostart/veranox.desktop"_s);
    }
    const EnvironmentVariable named("XDG_CONFIG_HOME", "c");
    EXPECT_EQ(AutostartLoginItem::defaultEntryPath(), u"/home/somebody/.config/autostart/veranox.desktop"_s);
}
