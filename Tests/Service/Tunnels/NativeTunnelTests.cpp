#include "Tests/Service/Support/LabBench.h"
#include "Tests/Service/Tunnels/LabTunnel.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using namespace test::lab_tunnel;
using test::LabBench;
using test::Peer;
using ::testing::HasSubstr;

TEST(NativeTunnel, CarriesBothWaysAndPassesOnTheHalfClose)
{
    const Peer target = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, at(target.port())));
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 0, ""}));
    const Peer client = Peer::connectTo(port);
    const Peer far = target.accept();
    ASSERT_TRUE(client.send("question"));
    EXPECT_EQ(far.receive(8), "question");
    client.finishSending();
    EXPECT_EQ(far.receiveAll(), "");
    ASSERT_TRUE(far.send("answer")) << "the other half stays open";
    EXPECT_EQ(client.receive(6), "answer");
    EXPECT_EQ(bench.tunnel("t").activeConns, 1);
    far.finishSending();
    EXPECT_EQ(client.receiveAll(), "");
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == 0; }));
}

TEST(NativeTunnel, PassesOnAResetFromEitherSide)
{
    const Peer target = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, at(target.port())));
    for (const bool fromClient : {true, false}) {
        Peer client = Peer::connectTo(port);
        Peer far = target.accept();
        ASSERT_TRUE(client.send("x"));
        ASSERT_EQ(far.receive(1), "x");
        (fromClient ? client : far).reset();
        EXPECT_TRUE((fromClient ? far : client).endsInReset()) << fromClient;
    }
}

TEST(NativeTunnel, BuiltInHostsAnswer)
{
    const std::uint16_t site = test::freePort();
    LabBench siteBench(labWith(site, "site"));
    const Peer browser = Peer::connectTo(site);
    ASSERT_TRUE(browser.send("GET / HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n"));
    const std::string page = browser.receiveAll();
    EXPECT_THAT(page, ::testing::StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(page, HasSubstr("host of the lab network"));

    const std::uint16_t echo = test::freePort();
    LabBench echoBench(labWith(echo, "echo"));
    const Peer caller = Peer::connectTo(echo);
    ASSERT_TRUE(caller.send("hello"));
    caller.finishSending();
    EXPECT_EQ(caller.receiveAll(), "hello");

    const std::uint16_t hole = test::freePort();
    LabBench holeBench(labWith(hole, "blackhole"));
    const Peer shouter = Peer::connectTo(hole);
    ASSERT_TRUE(shouter.send("hello"));
    shouter.finishSending();
    EXPECT_EQ(shouter.receiveAll(), "");
}

TEST(NativeTunnel, SaysWhoHoldsItsPortAndTakesItOnceItIsFree)
{
    Peer holder = Peer::listening();
    LabBench bench(labWith(holder.port(), "echo"));
    EXPECT_EQ(bench.tunnel("t").state, "error");
    EXPECT_THAT(bench.tunnel("t").lastError, HasSubstr("The address " + at(holder.port()) + " is taken"));
    EXPECT_TRUE(bench.becomes([&] {
        const std::string error = bench.tunnel("t").lastError;
        return error.starts_with("The address " + at(holder.port()) + " is taken by ")
            && error.ends_with(" (process " + std::to_string(::getpid()) + ").");
    })) << bench.tunnel("t").lastError;
    const std::uint16_t port = holder.port();
    holder.close();
    bench.pass(500ms);
    EXPECT_EQ(bench.tunnel("t").state, "error") << "the next attempt comes after a second";
    bench.pass(500ms);
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 0, ""}));
    EXPECT_TRUE(Peer::connectTo(port).send("x"));
}

TEST(NativeTunnel, WaitsOutAConnectionThatGoesOutFromItsPort)
{
    const Peer elsewhere = Peer::listening();
    const std::uint16_t port = test::freePort();
    Peer passing = Peer::connectFrom(port, elsewhere.port());
    LabBench bench(labWith(port, "echo"));
    const auto saysSo = [&] {
        return bench.tunnel("t").lastError
            == "The address " + at(port)
            + " is used by an outgoing connection at the moment; it will be taken as soon as it is free.";
    };
    EXPECT_TRUE(bench.becomes(saysSo)) << bench.tunnel("t").lastError;
    bench.pass(250ms);
    EXPECT_EQ(bench.tunnel("t").state, "error");
    EXPECT_TRUE(saysSo());
    passing.reset();
    EXPECT_TRUE(bench.becomes([&] {
        bench.pass(250ms);
        return bench.tunnel("t").state == "listening";
    })) << bench.tunnel("t").lastError;
    EXPECT_TRUE(Peer::connectTo(port).send("x"));
}

TEST(NativeTunnel, HostThatTheTailnetDoesNotHaveIsAnError)
{
    LabBench bench(labWith(test::freePort(), "echo", "nobody.tail1.ts.net:80"));
    EXPECT_EQ(bench.tunnel("t"),
        (TunnelStatus{"error", 0, "The tailnet of profile \"p\" has no host \"nobody.tail1.ts.net\"."}));
}

TEST(NativeTunnel, FailedDialIsToldAndForgottenWithTheNextThatSucceeds)
{
    std::optional<Peer> target(Peer::listening());
    const std::uint16_t targetPort = target->port();
    target.reset();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "127.0.0.1", "h.tail1.ts.net:" + std::to_string(targetPort)));
    EXPECT_TRUE(Peer::connectTo(port).endsInReset());
    EXPECT_EQ(bench.tunnel("t"),
        (TunnelStatus{
            "listening", 0, "h.tail1.ts.net port " + std::to_string(targetPort) + " refused the connection."}));
}

TEST(NativeTunnel, WaitsForItsNodeAndFallsWithIt)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo", "h.tail1.ts.net:80",
        R"(, "settles_after_s": 2, "fails": "The key expired.", "fails_after_s": 10)", R"("starts_after_s": 1, )"));
    EXPECT_EQ(bench.tunnel("t").state, "starting");
    EXPECT_ANY_THROW(Peer::connectTo(port));
    bench.pass(3s);
    EXPECT_EQ(bench.tunnel("t").state, "listening");
    const Peer client = Peer::connectTo(port);
    ASSERT_TRUE(client.send("x"));
    ASSERT_EQ(client.receive(1), "x");
    bench.pass(7s);
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"error", 0, "Profile \"p\" is not running: The key expired."}));
    EXPECT_TRUE(client.endsInReset());
    EXPECT_ANY_THROW(Peer::connectTo(port));
}

TEST(NativeTunnel, GoesWithItsProfileAndTakesItsConnectionsAlong)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo"));
    const Peer client = Peer::connectTo(port);
    ASSERT_TRUE(client.send("x"));
    ASSERT_EQ(client.receive(1), "x");
    const NamedList<ProfileSettings> profiles = std::exchange(bench.document().profiles, {});
    bench.apply();
    EXPECT_TRUE(client.endsInReset());
    EXPECT_ANY_THROW(Peer::connectTo(port));
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"error", 0, "The profile \"p\" is not configured."}));
    bench.document().tunnels.front().second.disabled = true;
    bench.apply();
    EXPECT_EQ(bench.tunnel("t"), TunnelStatus{}) << "one that is switched off has nothing to complain about";
    bench.document().tunnels.front().second.disabled = false;
    bench.document().profiles = profiles;
    bench.apply();
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 0, ""}));
    EXPECT_NO_THROW(Peer::connectTo(port));
}

TEST(NativeTunnel, ConnectionsOutliveASaveThatDoesNotConcernThem)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo"));
    const Peer client = Peer::connectTo(port);
    bench.document().tunnels.front().second.displayName = "Another label";
    bench.apply();
    ASSERT_TRUE(client.send("still"));
    EXPECT_EQ(client.receive(5), "still");
    const std::uint16_t moved = test::freePort();
    bench.document().tunnels.front().second.listen = at(moved);
    bench.apply();
    EXPECT_TRUE(client.endsInReset());
    EXPECT_ANY_THROW(Peer::connectTo(port));
    const Peer later = Peer::connectTo(moved);
    ASSERT_TRUE(later.send("x"));
    EXPECT_EQ(later.receive(1), "x");
    bench.document().tunnels.front().second.disabled = true;
    bench.apply();
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"stopped", 0, ""}));
    EXPECT_ANY_THROW(Peer::connectTo(moved));
}

TEST(NativeTunnel, RestartDropsConnectionsAndListensAgain)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo"));
    const Peer client = Peer::connectTo(port);
    ASSERT_TRUE(client.send("x"));
    ASSERT_EQ(client.receive(1), "x");
    bench.call([&] { bench.traffic().restartTunnel("t"); });
    EXPECT_TRUE(client.endsInReset());
    const Peer later = Peer::connectTo(port);
    ASSERT_TRUE(later.send("x"));
    EXPECT_EQ(later.receive(1), "x");
    bench.call([&] { bench.traffic().restartTunnel("nobody"); });
}

TEST(NativeTunnel, ActedTunnelOnlyShowsItsState)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo", "h.tail1.ts.net:80", "", R"("acted": true, "active_connections": 3, )"));
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 3, ""}));
    EXPECT_ANY_THROW(Peer::connectTo(port));
}

TEST(NativeTunnel, ConnectionsOfTheLabAreCountedBesideTheRealOnes)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo", "h.tail1.ts.net:80", "", R"("active_connections": 2, )"));
    EXPECT_EQ(bench.tunnel("t").activeConns, 2);
    const Peer client = Peer::connectTo(port);
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == 3; }));
}

} // namespace

} // namespace veranox
