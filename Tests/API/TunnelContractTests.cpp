#include "API/Records/VeranoxTunnel.h"
#include "Tests/API/ClientAndService.h"
#include "Tests/Support/Eventually.h"
#include <csignal>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

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
