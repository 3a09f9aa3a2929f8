// The application's real client before the real service: each operation with success, and each refusal with the
// sentence that a person reads.
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxProfileAction.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "Tests/API/ClientAndService.h"
#include "Tests/Support/Eventually.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

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

TEST_F(ClientAndService, aTargetKeepsAQueryOfItsOwn)
{
    for (const QString &target :
        {u"http://wiki.office.ts.net/?a=1&target=2"_s, u"http://wiki.office.ts.net/?netcheck=maybe"_s,
            u"http://wiki.office.ts.net/?ping_count=99&netcheck=false"_s, u"http://wiki.office.ts.net/ü?%26=+&x"_s}) {
        const auto report = value(client->diagnose(target));
        EXPECT_EQ(report.target, target);
        EXPECT_EQ(report.host, u"wiki.office.ts.net"_s);
    }
}
