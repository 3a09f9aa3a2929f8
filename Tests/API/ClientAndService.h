// The application's real client before the real service.
#pragma once
#include "API/Client/VeranoxAPIClient.h"
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "Publications/VeranoxPublicationErrorMessage.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include "Tests/Support/FreeEndpoint.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include "Tunnels/VeranoxTunnelErrorMessage.h"
#include <gtest/gtest.h>

inline constexpr std::string_view clientLab = R"({
    "version": 1,
    "tailnets": {
        "office": {"suffix": ".office.ts.net", "hosts": {"wiki": "site", "echo": "echo", "hole": "blackhole"}},
        "annex": {"suffix": ".annex.ts.net"}},
    "profiles": {
        "office": {"tailnet": "office", "config": {"DisplayName": "Office", "Suffixes": [".office.ts.net"]}},
        "annex": {"tailnet": "annex", "needs_login": true, "approved_after_s": 0.3,
            "config": {"DisplayName": "Annex", "Suffixes": [".annex.ts.net"]}},
        "broken": {"tailnet": "annex", "fails": "no licence", "config": {"Suffixes": [".broken.ts.net"]}},
        "daemon": {"tailnet": "annex", "config": {"Backend": "tailscaled", "Suffixes": [".daemon.ts.net"]}}},
    "tunnels": {"db": {"config": {"Profile": "office", "Target": "echo.office.ts.net:7", "Listen": "DB_LISTEN"}}},
    "publications": {
        "web": {"config": {"Profile": "office", "Target": "127.0.0.1:9", "Port": 443}},
        "lost": {"config": {"Profile": "broken", "Target": "127.0.0.1:9", "Port": 443, "Disabled": true}}}})";

// A job that leaves there what the call gave.
template <class R> jobs::Async<> keepValue(std::shared_ptr<std::optional<R>> into, jobs::Async<R> call)
{
    into->emplace(co_await std::move(call));
}

template <class Record> QStringList namesOf(const QList<Record> &records)
{
    QStringList names;
    for (const Record &record : records)
        names.append(record.name);
    return names;
}

// Both with a home folder of their own, and the service with that lab.
class ClientAndService : public testing::Test {
protected:
    ClientAndService()
    {
        std::string text(clientLab);
        text.replace(text.find("DB_LISTEN"), 9, dbListen.toStdString());
        home.write("lab.json", text);
        service.emplace(home.path(),
            std::vector<std::string>{"gui", "serve", "--listen", "127.0.0.1:0", "--lab", (home / "lab.json").string()});
        const QUrl url(QStringLiteral("http://127.0.0.1:") + QString::number(service->awaitPort()));
        client.emplace(world.queue, url, VeranoxDiagnosticSession::make(),
            VeranoxClientIdentity{.appVersion = QStringLiteral("1.2.3"), .os = QStringLiteral("Linux 6.1.0")},
            QString::fromStdString(home / ".local/share/Veranox/control.token"));
    }

    template <class R> R outcome(jobs::Async<R> call)
    {
        const auto kept = std::make_shared<std::optional<R>>();
        jobs.start(keepValue(kept, std::move(call)));
        EXPECT_TRUE(world.runUntil([&] { return kept->has_value(); }));
        return kept->value();
    }
    template <class T> T value(VeranoxAPICall<T> call)
    {
        const auto result = outcome(std::move(call));
        if (!result) {
            ADD_FAILURE() << reason(result.error()).toStdString();
            return T();
        }
        return *result;
    }
    bool succeeds(VeranoxAPICall<> call)
    {
        const auto result = outcome(std::move(call));
        EXPECT_TRUE(result) << reason(result.error()).toStdString();
        return result.has_value();
    }

    // What the service says, in its own words.
    static QString reason(const VeranoxAPIFailure &failure) { return failure.localizedDescription(); }
    // Expects a refusal that leaves the configuration file as it was, and gives it.
    template <class T> VeranoxAPIFailure refusal(VeranoxAPICall<T> call)
    {
        const std::string before = configFile();
        const auto result = outcome(std::move(call));
        EXPECT_EQ(configFile(), before);
        EXPECT_FALSE(result);
        return result ? VeranoxAPIFailure() : result.error();
    }
    template <class T> QString tunnelRefusal(VeranoxAPICall<T> call)
    {
        return VeranoxTunnelErrorMessage::message(refusal(std::move(call)), QStringLiteral("unavailable"));
    }
    template <class T> QString publicationRefusal(VeranoxAPICall<T> call)
    {
        return VeranoxPublicationErrorMessage::message(refusal(std::move(call)), QStringLiteral("unavailable"));
    }
    std::string configFile() const { return home.read(".config/veranox/config.json"); }

    static VeranoxEditableTunnel tunnel()
    {
        return {.displayName = QStringLiteral("New"),
            .profile = QStringLiteral("office"),
            .mode = QStringLiteral("native"),
            .listen = freeEndpoint(),
            .target = QStringLiteral("wiki.office.ts.net:80"),
            .ssh = {},
            .disabled = false};
    }
    static VeranoxEditablePublication publication()
    {
        return {.displayName = QStringLiteral("New"),
            .profile = QStringLiteral("office"),
            .target = QStringLiteral("127.0.0.1:9"),
            .reach = QStringLiteral("tailnet"),
            .port = 8443,
            .tls = false,
            .disabled = false};
    }

    veranox::test::TemporaryFolder home;
    const QString dbListen = freeEndpoint();
    std::optional<veranox::test::ServiceProcess> service;
    RealWorld world;
    std::optional<VeranoxAPIClient> client;
    jobs::JobScope jobs{world.queue}; // last
};
