// The application's real client before the real service: each operation with success, and each refusal with the
// sentence that a person reads.
#include "API/Client/VeranoxAPIClient.h"
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxProfileAction.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "Publications/VeranoxPublicationErrorMessage.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include "Tunnels/VeranoxTunnelErrorMessage.h"
#include <QTcpServer>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using veranox::test::ServiceProcess;
using veranox::test::TemporaryFolder;

namespace {

constexpr std::string_view lab = R"({
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

// A port that nobody listens at, at the moment.
QString freeEndpoint()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return u"127.0.0.1:"_s + QString::number(server.serverPort());
}

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

} // namespace

class ClientAndService : public testing::Test {
protected:
    ClientAndService()
    {
        std::string text(lab);
        text.replace(text.find("DB_LISTEN"), 9, dbListen.toStdString());
        home.write("lab.json", text);
        service.emplace(home.path(),
            std::vector<std::string>{"gui", "serve", "--listen", "127.0.0.1:0", "--lab", (home / "lab.json").string()});
        const QUrl url(u"http://127.0.0.1:"_s + QString::number(service->awaitPort()));
        client.emplace(world.queue, url, VeranoxDiagnosticSession::make(),
            VeranoxClientIdentity{.appVersion = u"1.2.3"_s, .os = u"Linux 6.1.0"_s},
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
        return VeranoxTunnelErrorMessage::message(refusal(std::move(call)), u"unavailable"_s);
    }
    template <class T> QString publicationRefusal(VeranoxAPICall<T> call)
    {
        return VeranoxPublicationErrorMessage::message(refusal(std::move(call)), u"unavailable"_s);
    }
    std::string configFile() const { return home.read(".config/veranox/config.json"); }

    static VeranoxEditableTunnel tunnel()
    {
        return {.displayName = u"New"_s,
            .profile = u"office"_s,
            .mode = u"native"_s,
            .listen = freeEndpoint(),
            .target = u"wiki.office.ts.net:80"_s,
            .ssh = {},
            .disabled = false};
    }
    static VeranoxEditablePublication publication()
    {
        return {.displayName = u"New"_s,
            .profile = u"office"_s,
            .target = u"127.0.0.1:9"_s,
            .reach = u"tailnet"_s,
            .port = 8443,
            .tls = false,
            .disabled = false};
    }

    TemporaryFolder home;
    const QString dbListen = freeEndpoint();
    std::optional<ServiceProcess> service;
    RealWorld world;
    std::optional<VeranoxAPIClient> client;
    jobs::JobScope jobs{world.queue}; // last
};

TEST_F(ClientAndService, reads)
{
    EXPECT_TRUE(outcome(client->healthCheck()));
    EXPECT_THAT(
        namesOf(value(client->fetchProfiles())), ElementsAre(u"office"_s, u"annex"_s, u"broken"_s, u"daemon"_s));
    EXPECT_EQ(value(client->fetchConfig()).router.httpProxy, u"127.0.0.1:43100");
    EXPECT_EQ(value(client->fetchEditableConfig()).profiles.value(u"office"_s).displayName, u"Office");
    EXPECT_EQ(value(client->fetchTunnels()).value(0).listen, dbListen);
    EXPECT_THAT(namesOf(value(client->fetchPublications())), ElementsAre(u"web"_s, u"lost"_s));
    EXPECT_FALSE(value(client->fetchEnvironment()).tailscaledBin.isEmpty());
}

TEST_F(ClientAndService, theDocumentIsSavedWholeAndKeepsTunnelsAndPublications)
{
    VeranoxEditableConfig document = value(client->fetchEditableConfig());
    EXPECT_TRUE(succeeds(client->saveConfig(document)));
    EXPECT_EQ(value(client->fetchEditableConfig()), document);
    document.profiles[u"office"_s].displayName = u"Büro"_s;
    document.router.tunnelListenBase = 50000;
    EXPECT_TRUE(succeeds(client->saveConfig(document)));
    EXPECT_EQ(value(client->fetchEditableConfig()), document);
    EXPECT_EQ(value(client->fetchTunnels()).size(), 1);
    EXPECT_EQ(value(client->fetchPublications()).size(), 2);
}

TEST_F(ClientAndService, aDocumentThatCannotBeIsRefused)
{
    const VeranoxEditableConfig good = value(client->fetchEditableConfig());
    const auto refused = [&](auto change) {
        VeranoxEditableConfig document = good;
        change(document);
        return reason(refusal(client->saveConfig(document)));
    };
    EXPECT_THAT(refused([](auto &d) { d.profiles[u"Bad Name"_s] = d.profiles[u"office"_s]; }).toStdString(),
        testing::HasSubstr("Bad Name"));
    EXPECT_THAT(refused([](auto &d) { d.profiles[u"annex"_s].suffixes = {u".office.ts.net"_s}; }).toStdString(),
        testing::HasSubstr(".office.ts.net"));
    EXPECT_THAT(refused([](auto &d) { d.router.httpProxy = u"0.0.0.0:43100"_s; }).toStdString(),
        testing::HasSubstr("HTTPProxy"));
    EXPECT_THAT(
        refused([](auto &d) { d.router.pacListen = d.router.httpProxy; }).toStdString(), testing::HasSubstr("43100"));
    EXPECT_EQ(value(client->fetchEditableConfig()), good);
}

TEST_F(ClientAndService, aDocumentThatIsTooLargeIsRefusedInTheServicesWords)
{
    VeranoxEditableConfig document = value(client->fetchEditableConfig());
    document.profiles[u"office"_s].displayName = QString(16 * 1024 * 1024, u'x');
    EXPECT_EQ(reason(refusal(client->saveConfig(document))), u"The body of the request is too large.");
}

TEST_F(ClientAndService, aLoginGivesAnAddressAndIsApproved)
{
    const auto stateOf = [&](const QString &name) {
        for (const VeranoxProfile &profile : value(client->fetchProfiles()))
            if (profile.name == name)
                return profile.status.backendState;
        return QString();
    };
    EXPECT_EQ(stateOf(u"annex"_s), u"NeedsLogin");
    const VeranoxProfileAction login = value(client->login(u"annex"_s));
    EXPECT_FALSE(login.ok) << "somebody has to approve it first";
    EXPECT_EQ(login.profile, u"annex");
    EXPECT_EQ(login.authURL().value_or(QUrl()).scheme(), u"https");
    EXPECT_TRUE(eventually([&] { return stateOf(u"annex"_s) == u"Running"_s; }));
    EXPECT_TRUE(value(client->logout(u"annex"_s)).ok);
    EXPECT_EQ(stateOf(u"annex"_s), u"NeedsLogin");
    EXPECT_THAT(reason(refusal(client->login(u"no such"_s))).toStdString(), testing::HasSubstr("no such"));
    EXPECT_THAT(reason(refusal(client->logout(u"no such"_s))).toStdString(), testing::HasSubstr("no such"));
}

TEST_F(ClientAndService, tunnelsAreSavedSwitchedRenamedAndDeleted)
{
    EXPECT_THAT(namesOf(value(client->saveTunnel(u"wiki"_s, {}, tunnel()))), ElementsAre(u"db"_s, u"wiki"_s));
    EXPECT_TRUE(value(client->stopTunnel(u"wiki"_s)).value(1).disabled);
    EXPECT_FALSE(value(client->startTunnel(u"wiki"_s)).value(1).disabled);
    EXPECT_EQ(value(client->restartTunnel(u"wiki"_s)).size(), 2);
    EXPECT_TRUE(eventually([&] { return value(client->fetchTunnels()).value(1).state == u"listening"_s; }));
    EXPECT_THAT(namesOf(value(client->saveTunnel(u"web"_s, u"wiki"_s, tunnel()))), ElementsAre(u"db"_s, u"web"_s));
    EXPECT_THAT(namesOf(value(client->deleteTunnel(u"web"_s))), ElementsAre(u"db"_s));
}

TEST_F(ClientAndService, aTunnelsPasswordIsTakenAndNeverWritten)
{
    VeranoxEditableTunnel deep = tunnel();
    deep.mode = u"ssh"_s;
    deep.disabled = true;
    deep.ssh = VeranoxEditableTunnelSSH{
        .bastion = u"b.office.ts.net"_s, .user = u"me"_s, .auth = u"password"_s, .identityFile = {}};
    const VeranoxTunnel saved = value(client->saveTunnel(u"deep"_s, {}, deep)).value(1);
    EXPECT_EQ(saved.sshAuth, u"password");
    EXPECT_EQ(saved.sshBastion, u"b.office.ts.net");
    const std::string before = configFile();
    EXPECT_TRUE(succeeds(client->setTunnelSecret(u"deep"_s, u"geheim-4711"_s)));
    EXPECT_EQ(configFile(), before);
    service->signal(SIGTERM);
    EXPECT_EQ(service->awaitEnd(), 0);
    EXPECT_EQ(service->output().find("geheim-4711"), std::string::npos);
    EXPECT_EQ(service->errorOutput().find("geheim-4711"), std::string::npos);
}

TEST_F(ClientAndService, refusedTunnelsAreExplained)
{
    const QString taken = u"A tunnel with that name already exists. Choose a different name."_s;
    EXPECT_EQ(tunnelRefusal(client->saveTunnel(u"db"_s, {}, tunnel())), taken);
    EXPECT_EQ(tunnelRefusal(client->saveTunnel(u"wiki"_s, u"gone"_s, tunnel())),
        u"This tunnel no longer exists — it was removed while you were editing it. Close the editor and create it "
        u"again.");
    const QString gone = u"That tunnel no longer exists — it was changed or removed elsewhere."_s;
    EXPECT_EQ(tunnelRefusal(client->deleteTunnel(u"gone"_s)), gone);
    EXPECT_EQ(tunnelRefusal(client->startTunnel(u"gone"_s)), gone);
    EXPECT_EQ(tunnelRefusal(client->stopTunnel(u"gone"_s)), gone);
    EXPECT_EQ(tunnelRefusal(client->restartTunnel(u"gone"_s)), gone);
    EXPECT_EQ(tunnelRefusal(client->setTunnelSecret(u"gone"_s, u"p"_s)), gone);
    VeranoxEditableTunnel wide = tunnel();
    wide.listen = u"0.0.0.0:50001"_s;
    EXPECT_THAT(tunnelRefusal(client->saveTunnel(u"wide"_s, {}, wide)).toStdString(), testing::HasSubstr("loopback"));
    VeranoxEditableTunnel second = tunnel();
    second.listen = dbListen;
    EXPECT_THAT(tunnelRefusal(client->saveTunnel(u"second"_s, {}, second)).toStdString(), testing::HasSubstr("db"));
}

TEST_F(ClientAndService, publicationsAreSavedSwitchedRenamedAndDeleted)
{
    EXPECT_THAT(namesOf(value(client->savePublication(u"new"_s, {}, publication()))),
        ElementsAre(u"web"_s, u"lost"_s, u"new"_s));
    EXPECT_TRUE(value(client->stopPublication(u"new"_s)).value(2).disabled);
    EXPECT_FALSE(value(client->startPublication(u"new"_s)).value(2).disabled);
    EXPECT_EQ(value(client->restartPublication(u"new"_s)).size(), 3);
    EXPECT_TRUE(eventually([&] { return value(client->fetchPublications()).value(2).state == u"listening"_s; }));
    EXPECT_FALSE(value(client->fetchPublications()).value(2).address.isEmpty());
    EXPECT_THAT(namesOf(value(client->savePublication(u"old"_s, u"new"_s, publication()))),
        ElementsAre(u"web"_s, u"lost"_s, u"old"_s));
    EXPECT_THAT(namesOf(value(client->deletePublication(u"old"_s))), ElementsAre(u"web"_s, u"lost"_s));
}

namespace {

// A change that makes the good publication one that the service refuses, and what the user reads then.
struct RefusedPublication {
    const char *name;
    std::function<void(VeranoxEditablePublication &)> change;
    QString sentence;
};

using Publication = VeranoxEditablePublication;

const std::vector<RefusedPublication> refusedPublications = {
    {"backend", [](Publication &p) { p.profile = u"daemon"_s; },
        u"Publications need a profile on the tsnet backend. Switch the profile to tsnet on the Profiles page — it will "
        "have to sign in again, because the two backends do not share state."_s},
    {"profile", [](Publication &p) { p.profile = u"gone"_s; },
        u"That profile is no longer in the configuration. Choose an existing profile."_s},
    {"ownListener", [](Publication &p) { p.target = u"127.0.0.1:43100"_s; },
        u"The target is one of Veranox's own listeners — a tunnel, a proxy, the PAC server or the control API. "
        "Publishing it would let this tailnet relay through Veranox into another one. Point the publication at your "
        "own service instead."_s},
    {"loopback", [](Publication &p) { p.target = u"192.168.1.5:80"_s; },
        u"The target must be a loopback address such as 127.0.0.1:8080, so Veranox never forwards tailnet traffic onto "
        "your local network."_s},
    {"hostAndPort", [](Publication &p) { p.target = u"8080"_s; },
        u"The target must be host:port, for example 127.0.0.1:8080."_s},
    {"numericPort", [](Publication &p) { p.target = u"127.0.0.1:http"_s; },
        u"The target must be host:port, for example 127.0.0.1:8080."_s},
    {"emptyHost", [](Publication &p) { p.target = u":8080"_s; },
        u"The target must be host:port, for example 127.0.0.1:8080."_s},
    {"port", [](Publication &p) { p.port = 65536; }, u"The tailnet port must be a number between 1 and 65535."_s},
    {"endpoint", [](Publication &p) { p.port = 443; },
        u"Another publication already uses that port on this profile. Pick a different port."_s},
    {"reach", [](Publication &p) { p.reach = u"world"_s; },
        u"That reach is not one Veranox understands. Publications are reachable from their own tailnet."_s},
};

} // namespace

TEST_F(ClientAndService, refusedPublicationsAreExplained)
{
    for (const RefusedPublication &refused : refusedPublications) {
        Publication changed = publication();
        refused.change(changed);
        EXPECT_EQ(publicationRefusal(client->savePublication(u"new"_s, {}, changed)), refused.sentence) << refused.name;
    }
    EXPECT_EQ(publicationRefusal(client->savePublication(u"web"_s, {}, publication())),
        u"A publication with that name already exists. Choose a different name.");
    EXPECT_EQ(publicationRefusal(client->savePublication(u"new"_s, u"gone"_s, publication())),
        u"This publication no longer exists — it was removed while you were editing it. Close the editor and create it "
        u"again.");
}

TEST_F(ClientAndService, actionsOnAPublicationThatIsGoneAreExplained)
{
    const QString gone = u"That publication no longer exists — it was changed or removed elsewhere."_s;
    EXPECT_EQ(publicationRefusal(client->deletePublication(u"gone"_s)), gone);
    EXPECT_EQ(publicationRefusal(client->startPublication(u"gone"_s)), gone);
    EXPECT_EQ(publicationRefusal(client->stopPublication(u"gone"_s)), gone);
    EXPECT_EQ(publicationRefusal(client->restartPublication(u"gone"_s)), gone);
}

TEST_F(ClientAndService, aPublicationThatCannotStartIsSwitchedOnAllTheSame)
{
    const auto failed = outcome(client->startPublication(u"lost"_s));
    ASSERT_FALSE(failed);
    EXPECT_THAT(VeranoxPublicationErrorMessage::message(failed.error(), {}).toStdString(),
        testing::MatchesRegex(
            "The publication was switched on and saved, but it could not be started: .*no licence.*"));
    EXPECT_FALSE(value(client->fetchPublications()).value(1).disabled);
}

TEST_F(ClientAndService, aPathIsReported)
{
    const VeranoxPathReport site = value(client->diagnose(u"http://wiki.office.ts.net/"_s));
    EXPECT_TRUE(site.routeMatched());
    EXPECT_EQ(site.profile, u"office");
    EXPECT_EQ(site.ruleSuffix, u".office.ts.net");
    ASSERT_TRUE(site.status && site.dns && site.ping && site.http && site.netcheck);
    EXPECT_TRUE(site.dns->ok);
    EXPECT_TRUE(site.ping->ok);
    EXPECT_EQ(site.http->statusCode, 200);
    EXPECT_FALSE(site.summary.isEmpty());
    EXPECT_FALSE(value(client->diagnose(u"elsewhere.example"_s)).routeMatched());
}

TEST_F(ClientAndService, feedbackIsKept)
{
    EXPECT_EQ(value(client->submitFeedback(u"Good\nwork"_s, u"praise"_s, QString())).url, std::nullopt);
}

TEST_F(ClientAndService, aShutdownEndsIt)
{
    EXPECT_TRUE(succeeds(client->shutdown()));
    EXPECT_EQ(service->awaitEnd(), 0);
    EXPECT_FALSE(outcome(client->healthCheck()));
    const auto after = outcome(client->fetchProfiles());
    ASSERT_FALSE(after);
    EXPECT_EQ(VeranoxTunnelErrorMessage::message(after.error(), u"unavailable"_s), u"unavailable");
}

TEST_F(ClientAndService, theTokenLiesWhereTheClientLooksForIt)
{
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", QByteArray::fromStdString(home.path().string()));
    const QString place = defaultControlTokenPath();
    qputenv("HOME", before);
    EXPECT_EQ(place, QString::fromStdString(home / ".local/share/Veranox/control.token"));
    EXPECT_TRUE(readControlToken(place));
}

TEST_F(ClientAndService, aNewTokenIsFoundByItself)
{
    const std::string place = ".local/share/Veranox/control.token";
    const std::string current = home.read(place);
    home.write(place, "stale");
    EXPECT_FALSE(outcome(client->stopTunnel(u"db"_s))); // the client keeps the stale token from here on
    EXPECT_FALSE(value(client->fetchTunnels()).value(0).disabled);
    home.write(place, current);
    EXPECT_TRUE(value(client->stopTunnel(u"db"_s)).value(0).disabled);
    home.write(place, "stale again");
    EXPECT_FALSE(value(client->startTunnel(u"db"_s)).value(0).disabled) << "the good one is kept";
}
