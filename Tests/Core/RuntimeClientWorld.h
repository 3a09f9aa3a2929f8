// A runtime client over real processes, in real time.
#pragma once
#include "Core/VeranoxRuntimeClient.h"
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
          client(std::make_unique<VeranoxRuntimeClient>(world.queue, QStringLiteral("127.0.0.1:43299"), session)),
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

    // Kills the children of this test; false when there is none.
    static bool killDoubles()
    {
        bool any = false;
        QFile children(QStringLiteral("/proc/self/task/%1/children").arg(::getpid()));
        if (children.open(QFile::ReadOnly)) {
            for (const QByteArray &child : children.readAll().split(' '))
                any = (child.toInt() > 0 && ::kill(child.toInt(), SIGKILL) == 0) || any;
        }
        return any;
    }

    RealWorld world;
    VeranoxDiagnosticSession session;
    QStringList lines;
    QList<std::int32_t> exits;
    std::unique_ptr<VeranoxRuntimeClient> client;
    jobs::JobScope scope;
};
