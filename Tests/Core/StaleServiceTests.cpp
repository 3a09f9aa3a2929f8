// What an earlier run left behind is cleared away, and nothing else is touched.
#include "Base/Process/ChildProcess.h"
#include "Tests/Core/RuntimeClientWorld.h"
#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class StaleService : public RuntimeClientWorld {
protected:
    // Another process: of an earlier run, or of somebody else.
    std::unique_ptr<ChildProcess> other(const QString &executable, const QStringList &arguments)
    {
        return std::make_unique<ChildProcess>(world.queue,
            ChildProcess::Program{
                .executable = executable, .arguments = arguments, .environment = currentProcessEnvironment()});
    }

    static QStringList service(const QStringList &instructions, const QString &listen = ownAddress())
    {
        return instructions + QStringList{u"gui"_s, u"serve"_s, u"--listen"_s, listen};
    }

    // Seconds that the clearing takes.
    double clear(const VeranoxCommand &command)
    {
        const double begin = world.seconds();
        const auto clearing = scope.start(client->terminateStaleGUIService(command));
        EXPECT_TRUE(world.runUntil([&] { return clearing.finished(); }));
        return world.seconds() - begin;
    }

    bool ends(const ChildProcess &process)
    {
        return world.runUntil([&] { return !process.isRunning(); }, 5s);
    }

    // Whether it still runs after it would have heard of its end.
    bool survives(const ChildProcess &process)
    {
        return !world.runUntil([&] { return !process.isRunning(); }, 200ms);
    }

    // The double under another path.
    QString copyTo(const QString &name)
    {
        const QString path = folder.filePath(name);
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        EXPECT_TRUE(QFile::copy(QStringLiteral(SERVICE_DOUBLE), path));
        return path;
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(StaleService, isAskedToStop)
{
    const auto stale = other(QStringLiteral(SERVICE_DOUBLE), service({u"stay"_s}));
    clear(doing({u"stay"_s}));
    ASSERT_TRUE(ends(*stale));
    EXPECT_EQ(stale->terminationStatus(), 128 + SIGTERM);
}

TEST_F(StaleService, isKilledWhenItDoesNot)
{
    const QString executable = copyTo(u"stubborn"_s);
    const auto stale = other(executable, service({u"stubborn"_s, u"say:ready"_s, u"stay"_s}));
    bool ready = false;
    const auto reading = scope.start(stale->read());
    ASSERT_TRUE(world.runUntil([&] { return ready = reading.finished(); }));
    EXPECT_GE(clear(doing({u"stubborn"_s, u"say:ready"_s, u"stay"_s}, executable)), 0.35);
    ASSERT_TRUE(ends(*stale));
    EXPECT_EQ(stale->terminationStatus(), 128 + SIGKILL);
}

TEST_F(StaleService, severalAreAllCleared)
{
    const auto first = other(QStringLiteral(SERVICE_DOUBLE), service({u"stay"_s}));
    const auto second = other(QStringLiteral(SERVICE_DOUBLE), service({u"stay"_s}));
    clear(doing({u"stay"_s}));
    EXPECT_TRUE(ends(*first));
    EXPECT_TRUE(ends(*second));
}

TEST_F(StaleService, withoutOneThereIsNothingToWaitFor)
{
    EXPECT_LT(clear(doing({u"stay"_s}, u"/nowhere/veranox"_s)), 0.35);
}

TEST_F(StaleService, lookAlikesAreNotTouched)
{
    const QString executable = copyTo(u"veranox"_s);
    const std::unique_ptr<ChildProcess> lookAlikes[] = {
        other(executable, service({u"stay"_s}, u"127.0.0.1:43298"_s)),
        other(executable, service({u"stay"_s}) + QStringList{u"--verbose"_s}),
        other(executable, service({u"stay"_s}, ownAddress() + u'0')),
        other(executable,
            service({u"stay"_s}, ownAddress().replace(u'.', u'x'))), // what a dot in a pattern would also match
        other(executable, {u"stay"_s}),
        other(copyTo(u"veranox2"_s), service({u"stay"_s})),
        other(copyTo(u"other/veranox"_s), service({u"stay"_s})),
        other(QStringLiteral("/bin/sleep"), {u"30"_s}),
    };
    const auto stale = other(executable, service({u"stay"_s}));
    clear(doing({u"stay"_s}, executable));
    EXPECT_TRUE(ends(*stale));
    for (const auto &lookAlike : lookAlikes)
        EXPECT_TRUE(survives(*lookAlike));
}

TEST_F(StaleService, theSameCommandOfAnotherUserIsNotTouched)
{
    if (::getuid() != 0)
        GTEST_SKIP() << "only root can run a process as somebody else";
    ASSERT_TRUE(QFile::setPermissions(folder.path(), QFile::Permissions(0x7755)));
    const QString executable = copyTo(u"veranox"_s);
    const auto theirs = other(u"/usr/bin/setpriv"_s,
        QStringList{u"--reuid=65534"_s, u"--clear-groups"_s, executable} + service({u"say:ready"_s, u"stay"_s}));
    const auto reading = scope.start(theirs->read());
    ASSERT_TRUE(world.runUntil([&] { return reading.finished(); }));
    clear(doing({u"say:ready"_s, u"stay"_s}, executable));
    EXPECT_TRUE(survives(*theirs));
}

TEST_F(StaleService, isFoundWhateverItsPathIsMadeOf)
{
    for (const QString &name : {u"c++/veranox"_s, u"a (b) [c]/veranox"_s, u"^$*?{2}|\\/veranox"_s, u"(/veranox"_s,
             u"[/veranox"_s, u"{1/veranox"_s, u"Zoë 木/veranox"_s}) {
        const QString executable = copyTo(name);
        const auto stale = other(executable, service({u"stay"_s}));
        clear(doing({u"stay"_s}, executable));
        EXPECT_TRUE(ends(*stale)) << name.toStdString();
    }
}

TEST_F(StaleService, isFoundWhateverTheEnvironmentTellsTheTools)
{
    qputenv("COLUMNS", "20");
    qputenv("PS_FORMAT", "pid");
    const auto stale = other(QStringLiteral(SERVICE_DOUBLE), service({u"stay"_s}));
    clear(doing({u"stay"_s}));
    EXPECT_TRUE(ends(*stale));
    qunsetenv("COLUMNS");
    qunsetenv("PS_FORMAT");
}

TEST_F(StaleService, anIdentifierThatBelongsToAnotherProcessByNowGetsNoSignal)
{
    VeranoxStaleServices services(world.queue);
    const auto stranger = other(QStringLiteral(SERVICE_DOUBLE), {u"stay"_s});
    const QString expected = client->staleGUICommandLine(doing({u"stay"_s}));
    const auto signalling =
        scope.start(services.signalIfStillMatching({stranger->processIdentifier(), 0, -1}, expected, SIGKILL));
    ASSERT_TRUE(world.runUntil([&] { return signalling.finished(); }));
    EXPECT_TRUE(survives(*stranger));
}

TEST_F(StaleService, theOwnServiceIsOneOfThem)
{
    client->startGUI(doing({u"stay"_s})); // runs, but does not answer: it holds the port like any other
    clear(doing({u"stay"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(exits, QList<std::int32_t>({128 + SIGTERM}));
}
