// A client in virtual time before a scripted server.
#pragma once
#include "API/Client/VeranoxAPIClient.h"
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "Tests/Support/HostileServer.h"
#include "Tests/Support/MainThreadHeartbeat.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/ScriptedServer.h"
#include "Tests/Support/VirtualTime.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// How a call ended: Good, or with which failure.
enum class Ending { None, Good, Unavailable, Refused, BadResponse, Undecodable, Cancelled };

inline void PrintTo(Ending ending, std::ostream *out)
{
    constexpr const char *names[] = {
        "None", "Good", "Unavailable", "Refused", "BadResponse", "Undecodable", "Cancelled"};
    *out << names[static_cast<std::size_t>(ending)];
}

inline Ending endingOf(VeranoxAPIFailure::Kind kind)
{
    switch (kind) {
    case VeranoxAPIFailure::Kind::cancelled:
        return Ending::Cancelled;
    case VeranoxAPIFailure::Kind::unavailable:
        return Ending::Unavailable;
    case VeranoxAPIFailure::Kind::refused:
        return Ending::Refused;
    case VeranoxAPIFailure::Kind::badResponse:
        return Ending::BadResponse;
    case VeranoxAPIFailure::Kind::undecodable:
        return Ending::Undecodable;
    }
    Q_UNREACHABLE();
}

template <class T> struct Outcome {
    Ending ending = Ending::None;
    std::optional<T> value;
    QString text; // of the failure
    int status = 0; // of a refusal

    bool ended() const { return ending != Ending::None; }
};

class ApiClientTest : public testing::Test {
protected:
    // Begins the call as a job of its own, without waiting.
    template <class T> std::shared_ptr<Outcome<T>> begin(VeranoxAPICall<T> call)
    {
        const auto outcome = std::make_shared<Outcome<T>>();
        m_lastJob = jobs.start(collect(outcome, std::move(call)));
        return outcome;
    }
    std::shared_ptr<Outcome<bool>> begin(jobs::Async<bool> health) { return begin(asCall(std::move(health))); }
    // Makes the call and waits for its end, in which no virtual time passes.
    template <class T> auto complete(jobs::Async<T> call)
    {
        const auto outcome = begin(std::move(call));
        EXPECT_TRUE(waitUntil([&] { return outcome->ended(); }));
        return *outcome;
    }
    // Lets the event loop turn until this holds; gives up after 20 s of real time.
    bool waitUntil(const std::function<bool()> &condition) { return heartbeat.turnLoopUntil(condition); }
    bool waitForRequests(qsizetype count)
    {
        return waitUntil([&] { return server.received().size() >= count; });
    }
    jobs::Job<> lastJob() const { return m_lastJob; }

    void writeToken(const QByteArray &content)
    {
        QFile file(tokenPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    static VeranoxClientIdentity identity()
    {
        return {.appVersion = QStringLiteral("1.2.3"), .os = QStringLiteral("Test 4.5.6")};
    }
    QString tokenPath() const { return directory.filePath(QStringLiteral("control.token")); }

    QTemporaryDir directory;
    ScriptedServer server;
    MainThreadHeartbeat heartbeat;
    jobs::World world;
    const VeranoxDiagnosticSession session = VeranoxDiagnosticSession::make();
    VeranoxAPIClient client{world.queue, server.url(), session, identity(), tokenPath()};

private:
    static VeranoxAPICall<bool> asCall(jobs::Async<bool> health) { co_return co_await std::move(health); }
    template <class T> static jobs::Async<> collect(std::shared_ptr<Outcome<T>> outcome, VeranoxAPICall<T> call)
    {
        auto result = co_await std::move(call);
        if (!result) {
            outcome->ending = endingOf(result.error().kind);
            outcome->text = result.error().localizedDescription();
            outcome->status = result.error().status;
            co_return;
        }
        if constexpr (!std::is_void_v<T>)
            outcome->value = *std::move(result);
        outcome->ending = Ending::Good;
    }
    jobs::Job<> m_lastJob;

protected:
    jobs::JobScope jobs{world.queue}; // last
};

template <> struct Outcome<void> {
    Ending ending = Ending::None;
    QString text;
    int status = 0;

    bool ended() const { return ending != Ending::None; }
};
