// A runtime client over real processes, in real time.
#pragma once
#include "Core/VeranoxRuntimeClient.h"
#include "Tests/Core/OwnAddress.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <QFile>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

class RuntimeClientWorld : public ::testing::Test {
protected:
    RuntimeClientWorld()
        : session(VeranoxDiagnosticSession::make()),
          client(std::make_unique<VeranoxRuntimeClient>(world.queue, ownAddress(), session)),
          scope(world.queue)
    {
        client->onOutput = [this](const QString &line) { lines.append(line); };
        client->onGUIServiceExit = [this](std::int32_t status) { exits.append(status); };
    }

    ~RuntimeClientWorld() override
    {
        killDoubles();
        while (::waitpid(-1, nullptr, WNOHANG) > 0) { }
    }

    // A service that does this.
    static VeranoxCommand doing(
        const QStringList &instructions, const QString &executable = QStringLiteral(SERVICE_DOUBLE))
    {
        return {.executableURL = QUrl::fromLocalFile(executable), .leadingArguments = instructions};
    }

    bool waitForExit(std::chrono::milliseconds limit = std::chrono::seconds(30))
    {
        return world.runUntil([this] { return !exits.isEmpty(); }, limit);
    }

    // Stops what the client launched; gives the seconds that it took.
    double stop()
    {
        const double begin = world.seconds();
        const auto stopping = scope.start(client->shutdown());
        EXPECT_TRUE(world.runUntil([&] { return stopping.finished(); }));
        return world.seconds() - begin;
    }

    // Every line but those about start and end.
    QStringList said() const { return lines.mid(1, lines.size() - 2); }

    // The children of this test, those included that have ended and that nobody has asked for their status.
    static QList<pid_t> doubles()
    {
        QList<pid_t> found;
        QFile children(QStringLiteral("/proc/self/task/%1/children").arg(::getpid()));
        if (children.open(QFile::ReadOnly)) {
            for (const QByteArray &child : children.readAll().split(' '))
                if (child.toInt() > 0)
                    found.append(child.toInt());
        }
        return found;
    }

    // Kills the children of this test; false when there is none.
    static bool killDoubles()
    {
        bool any = false;
        for (const pid_t child : doubles())
            any = ::kill(child, SIGKILL) == 0 || any;
        return any;
    }

    // Whether the child lives and nobody has asked it to end. A stop tells: the system hands out a request to end that
    // was on its way before it.
    static bool livesUnasked(pid_t child)
    {
        int status = 0;
        return ::kill(child, SIGSTOP) == 0 && ::waitpid(child, &status, WUNTRACED) == child && WIFSTOPPED(status);
    }

    RealWorld world;
    VeranoxDiagnosticSession session;
    QStringList lines;
    QList<std::int32_t> exits;
    std::unique_ptr<VeranoxRuntimeClient> client;
    jobs::JobScope scope;
};
