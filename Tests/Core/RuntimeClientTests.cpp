#include "Base/Process/LaunchError.h"
#include "Tests/Core/RuntimeClientWorld.h"
#include <QScopeGuard>
#include <QTemporaryDir>
#include <csignal>
#include <fcntl.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RuntimeClient : public RuntimeClientWorld {
protected:
    static QByteArray program()
    {
        QFile file(QStringLiteral(SERVICE_DOUBLE));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    // An executable file of this content.
    QString executableOf(const QByteArray &content)
    {
        const QString path = folder.filePath(u"veranox-%1"_s.arg(++executables));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        return path;
    }

    QTemporaryDir folder;
    int executables = 0;
};

TEST_F(RuntimeClient, tellsOfTheStartTheLinesAndTheEnd)
{
    client->startGUI(doing({u"say:a\n\n  b  \n"_s, u"nap:50"_s, u"complain:c\n"_s, u"exit:7"_s}));
    EXPECT_EQ(lines, QStringList({u"[GUI] started"_s})); // told before the call returns
    ASSERT_TRUE(client->guiProcess()->isRunning);
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(lines,
        QStringList({u"[GUI] started"_s, u"[GUI] a"_s, u"[GUI] b"_s, u"[GUI] c"_s, u"[GUI] exited with status 7"_s}));
    EXPECT_EQ(exits, QList<std::int32_t>({7}));
    EXPECT_EQ(*client->guiProcess(), (VeranoxManagedProcessState{.isRunning = false, .terminationStatus = 7}));
}

TEST_F(RuntimeClient, passesTheSubcommandAfterTheLeadingArguments)
{
    EXPECT_EQ(client->staleGUICommandLine(doing({u"stay"_s})),
        QStringLiteral(SERVICE_DOUBLE) + u" stay gui serve --listen "_s + ownAddress());
}

TEST_F(RuntimeClient, aSignalDeathCountsAsShellsCountIt)
{
    client->startGUI(doing({u"die:6"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(exits, QList<std::int32_t>({128 + SIGABRT}));
}

TEST_F(RuntimeClient, givesTheServiceItsEnvironment)
{
    client->startGUI(doing({u"environment:VERANOX_SESSION_ID"_s, u"environment:VERANOX_START_REASON"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_TRUE(lines.contains(u"[GUI] VERANOX_SESSION_ID="_s + session.sessionID));
    EXPECT_TRUE(lines.contains(u"[GUI] VERANOX_START_REASON=app_managed"_s));
}

TEST_F(RuntimeClient, aLineThatArrivesInTwoReadsIsTwoLines)
{
    client->startGUI(doing({u"say:one "_s, u"nap:200"_s, u"say:two\n"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(said(), QStringList({u"[GUI] one"_s, u"[GUI] two"_s}));
}

TEST_F(RuntimeClient, whatIsNoTextIsDroppedWithItsWholeRead)
{
    client->startGUI(
        doing({u"say:before\n"_s, u"nap:200"_s, u"bytes:6f6bff0a6f6b0a"_s, u"nap:200"_s, u"say:after\n"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(said(), QStringList({u"[GUI] before"_s, u"[GUI] after"_s}));
}

TEST_F(RuntimeClient, aSecondStartWhileItRunsDoesNothing)
{
    client->startGUI(doing({u"stay"_s}));
    client->startGUI(doing({u"exit:3"_s}));
    EXPECT_EQ(lines, QStringList({u"[GUI] started"_s}));
    stop();
    EXPECT_EQ(lines.count(u"[GUI] started"_s), 1);
}

TEST_F(RuntimeClient, aLaunchFailureIsThrownInTheSystemsWordsAndChangesNothing)
{
    const auto messageOf = [this](const QString &executable) {
        try {
            client->startGUI({.executableURL = QUrl::fromLocalFile(executable), .leadingArguments = {}});
        } catch (const LocalizedError &error) {
            return error.localizedDescription();
        }
        return u"started"_s;
    };
    EXPECT_EQ(messageOf(u"/nowhere/veranox"_s), u"/nowhere/veranox could not be started: No such file or directory."_s);
    EXPECT_EQ(messageOf(u"/etc/passwd"_s), u"/etc/passwd could not be started: Permission denied."_s);
    QByteArray foreign = program();
    foreign[18] = 0x16; // the header's machine: S/390
    foreign[19] = 0;
    for (const QByteArray &content : {QByteArray(), foreign, program().first(100), QByteArray("no program\n")}) {
        const QString executable = executableOf(content);
        EXPECT_EQ(messageOf(executable), executable + u" could not be started: Exec format error."_s);
    }
    const QString orphan = executableOf("#!/nowhere/interpreter\n");
    EXPECT_EQ(messageOf(orphan), orphan + u" could not be started: No such file or directory."_s);
    EXPECT_FALSE(client->guiProcess());
    EXPECT_TRUE(lines.isEmpty());

    client->startGUI(doing({u"exit:4"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_NE(messageOf(u"/nowhere/veranox"_s), u"started"_s);
    EXPECT_EQ(client->guiProcess()->terminationStatus, 4);
}

TEST_F(RuntimeClient, aWantedEndIsToldButNotReported)
{
    client->startGUI(doing({u"stay"_s}));
    stop();
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] exited with status 143"_s); }));
    EXPECT_TRUE(exits.isEmpty());
    EXPECT_FALSE(client->guiProcess());

    client->startGUI(doing({u"exit:5"_s})); // the next end that nobody wanted is
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(exits, QList<std::int32_t>({5}));
}

TEST_F(RuntimeClient, aStopWithNothingLaunchedEndsAtOnce)
{
    EXPECT_LT(stop(), 0.5);
    client->startGUI(doing({u"exit:0"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_LT(stop(), 0.5);
    EXPECT_FALSE(client->guiProcess());
}

TEST_F(RuntimeClient, oneThatIgnoresTheRequestIsGoneWithinTwoSeconds)
{
    client->startGUI(doing({u"stubborn"_s, u"say:ready\n"_s, u"stay"_s}));
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] ready"_s); }));
    const double took = stop();
    EXPECT_GE(took, 1.5);
    EXPECT_LT(took, 2.1);
    EXPECT_FALSE(client->guiProcess());
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] exited with status 137"_s); }));
    EXPECT_TRUE(exits.isEmpty());
}

TEST_F(RuntimeClient, aCancelledJobStillGivesTheServiceItsTime)
{
    client->startGUI(doing({u"stubborn"_s, u"say:ready\n"_s, u"stay"_s}));
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] ready"_s); }));
    const double begin = world.seconds();
    const auto stopping = scope.start(client->shutdown());
    stopping.cancel();
    ASSERT_TRUE(world.runUntil([&] { return stopping.finished(); }));
    EXPECT_GE(world.seconds() - begin, 1.5);
}

TEST_F(RuntimeClient, twoStopsEndTogether)
{
    client->startGUI(doing({u"stay"_s}));
    const auto first = scope.start(client->shutdown());
    const auto second = scope.start(client->shutdown());
    ASSERT_TRUE(world.runUntil([&] { return first.finished() && second.finished(); }));
    EXPECT_FALSE(client->guiProcess());
}

TEST_F(RuntimeClient, theImmediateEndAsksAndForgets)
{
    client->startGUI(doing({u"stay"_s}));
    client->terminateImmediately();
    EXPECT_FALSE(client->guiProcess());
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] exited with status 143"_s); }));
    EXPECT_TRUE(exits.isEmpty());
}

TEST_F(RuntimeClient, killedFiftyTimesItIsUpAgainEachTime)
{
    for (int round = 1; round <= 50; ++round) {
        client->startGUI(doing({u"say:up\n"_s, u"stay"_s}));
        ASSERT_TRUE(world.runUntil([&] { return lines.count(u"[GUI] up"_s) == round; })) << round;
        ASSERT_TRUE(killDoubles()) << round;
        ASSERT_TRUE(world.runUntil([&] { return exits.size() == round; })) << round;
        ASSERT_FALSE(client->guiProcess()->isRunning);
    }
    EXPECT_EQ(exits.count(128 + SIGKILL), 50);
    EXPECT_EQ(lines.count(u"[GUI] exited with status 137"_s), 50);
}

TEST_F(RuntimeClient, theLastWordsAreReadThoughAnHeirHoldsTheOutput)
{
    client->startGUI(doing({u"heir"_s, u"say:the cause\n"_s, u"exit:1"_s}));
    ASSERT_TRUE(waitForExit(5s)); // the heir lives for 20
    EXPECT_EQ(said(), QStringList({u"[GUI] the cause"_s}));
}

TEST_F(RuntimeClient, oneThatClosesItsOutputRunsOnAndItsEndIsTold)
{
    client->startGUI(doing({u"say:bye\n"_s, u"mute"_s, u"nap:200"_s, u"exit:9"_s}));
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] bye"_s); }));
    EXPECT_TRUE(client->guiProcess()->isRunning);
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(exits, QList<std::int32_t>({9}));
}

TEST_F(RuntimeClient, theServiceInheritsNoDescriptorNoSignalAndNoGroup)
{
    const int stray = ::open("/dev/null", O_RDONLY); // NOLINT: inheritable on purpose
    ASSERT_GE(stray, 3);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
    const auto restore = qScopeGuard([&] {
        ::close(stray);
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        std::signal(SIGPIPE, pipeHandler);
    });

    client->startGUI(doing({u"descriptors"_s, u"signals"_s, u"group"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(said(), QStringList({u"[GUI] descriptors 0 1 2"_s, u"[GUI] deaf to"_s, u"[GUI] leads a group"_s}));
}

TEST_F(RuntimeClient, aStatusThatSomebodyElseCollectsIsUnknown)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const auto restore = qScopeGuard([&] { std::signal(SIGCHLD, before); });
    client->startGUI(doing({u"nap:200"_s, u"exit:3"_s}));
    ASSERT_TRUE(waitForExit());
    EXPECT_EQ(exits, QList<std::int32_t>({-1}));
}

TEST_F(RuntimeClient, theServiceOutlivesAClientThatDoesNotStopIt)
{
    client->startGUI(doing({u"say:up\n"_s, u"stay"_s}));
    ASSERT_TRUE(world.runUntil([this] { return lines.contains(u"[GUI] up"_s); }));
    const QList<pid_t> launched = doubles();
    ASSERT_EQ(launched.size(), 1);
    client.reset();
    EXPECT_TRUE(livesUnasked(launched.first()));
}
