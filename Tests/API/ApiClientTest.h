// A client in virtual time before a scripted server.
#pragma once
#include "API/Client/VeranoxAPIClient.h"
#include "API/Client/VeranoxAPIClientError.h"
#include "API/Client/VeranoxAPIError.h"
#include "API/Client/VeranoxBadServerResponse.h"
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "Base/Failures/VeranoxCancellation.h"
#include "Base/Json/VeranoxDecodingError.h"
#include "Tests/Support/HostileServer.h"
#include "Tests/Support/MainThreadHeartbeat.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/ScriptedServer.h"
#include "Tests/Support/VirtualTime.h"
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// How a call ended: Good, or which failure it threw.
enum class Ending { none, good, unavailable, refused, badResponse, undecodable, cancelled };

inline void PrintTo(Ending ending, std::ostream *out)
{
    constexpr const char *names[] = {
        "None", "Good", "Unavailable", "Refused", "BadResponse", "Undecodable", "Cancelled"};
    *out << names[static_cast<std::size_t>(ending)];
}

template <class T> struct Outcome {
    Ending ending = Ending::none;
    std::optional<T> value;
    QString text; // of the failure

    bool ended() const { return ending != Ending::none; }
};

class ApiClientTest : public testing::Test {
protected:
    // Begins the call as a job of its own, without waiting.
    template <class T> std::shared_ptr<Outcome<T>> begin(jobs::Async<T> call)
    {
        const auto outcome = std::make_shared<Outcome<T>>();
        m_lastJob = jobs.start(collect(outcome, std::move(call)));
        return outcome;
    }
    // Makes the call and waits for its end, in which no virtual time passes.
    template <class T> Outcome<T> complete(jobs::Async<T> call)
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
    template <class T> static jobs::Async<> collect(std::shared_ptr<Outcome<T>> outcome, jobs::Async<T> call)
    {
        try {
            if constexpr (std::is_void_v<T>)
                co_await std::move(call);
            else
                outcome->value = co_await std::move(call);
            outcome->ending = Ending::good;
        } catch (const VeranoxAPIClientError &e) {
            finish(*outcome, Ending::unavailable, e);
        } catch (const VeranoxAPIError &e) {
            finish(*outcome, Ending::refused, e);
        } catch (const VeranoxBadServerResponse &e) {
            finish(*outcome, Ending::badResponse, e);
        } catch (const VeranoxDecodingError &e) {
            finish(*outcome, Ending::undecodable, e);
        } catch (const VeranoxCancellation &e) {
            finish(*outcome, Ending::cancelled, e);
        }
    }
    template <class T> static void finish(Outcome<T> &outcome, Ending ending, const VeranoxError &error)
    {
        outcome.ending = ending;
        outcome.text = error.localizedDescription();
    }
    jobs::Job<> m_lastJob;

protected:
    jobs::JobScope jobs{world.queue}; // last
};

template <> struct Outcome<void> {
    Ending ending = Ending::none;
    QString text;

    bool ended() const { return ending != Ending::none; }
};
