#include "Tests/Service/Support/LabBench.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using test::LabBench;
using test::Peer;
using ::testing::HasSubstr;

std::string at(std::uint16_t port)
{
    return "127.0.0.1:" + std::to_string(port);
}

/// Profile "p" publishes `target` on port 8080 of its node; tunnel "t" of profile "q" in the same tailnet leads there.
std::string labWith(std::uint16_t listen, std::uint16_t target, const std::string &publisher = "")
{
    return R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net"}},
        "profiles": {"p": {"tailnet": "net")"
        + publisher + R"(, "config": {"Hostname": "desk"}}, "q": {"tailnet": "net", "config": {}}},
        "tunnels": {"t": {"config": {"Profile": "q", "Target": "desk.tail1.ts.net:8080", "Listen": ")"
        + at(listen) + R"("}}},
        "publications": {"web": {"config": {"Profile": "p", "Port": 8080, "Target": ")"
        + at(target) + R"("}}}})";
}

TEST(PublicationRunner, OtherNodesReachIt)
{
    const Peer service = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, service.port()));
    EXPECT_EQ(bench.publication("web").state, "listening");
    EXPECT_EQ(bench.publication("web").address, "desk.tail1.ts.net:8080");
    EXPECT_EQ(bench.publication("web").lastActive, "");
    EXPECT_EQ(bench.publication("web").reachability.state, "reachable");
    const Peer visitor = Peer::connectTo(port);
    const Peer far = service.accept();
    ASSERT_TRUE(visitor.send("question"));
    EXPECT_EQ(far.receive(8), "question");
    ASSERT_TRUE(far.send("answer"));
    EXPECT_EQ(visitor.receive(6), "answer");
    EXPECT_EQ(bench.publication("web").activeConns, 1);
    EXPECT_EQ(bench.publication("web").lastActive, "2025-03-01T08:15:30.000Z");
}

TEST(PublicationRunner, NodeAddressIsARealListener)
{
    const Peer service = Peer::listening();
    LabBench bench(labWith(test::freePort(), service.port(), R"(, "node_address": "127.80.0.9")"));
    const Peer visitor = Peer::connectTo(8080, "127.80.0.9");
    const Peer far = service.accept();
    ASSERT_TRUE(far.send("answer"));
    EXPECT_EQ(visitor.receive(6), "answer");
}

TEST(PublicationRunner, PolicyThatAdmitsNobodyRefuses)
{
    const Peer service = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, service.port(),
        R"(, "node_address": "127.80.0.10",
           "policy": {"admits": "nobody", "hint": {"host_alias": "desk", "node_ip": "100.64.0.1"}})"));
    EXPECT_TRUE(Peer::connectTo(port).endsInReset());
    EXPECT_THAT(bench.tunnel("t").lastError, HasSubstr("the policy of the tailnet admits no device"));
    EXPECT_TRUE(Peer::connectTo(8080, "127.80.0.10").endsInReset());
    EXPECT_EQ(bench.publication("web").state, "listening");
    EXPECT_EQ(bench.publication("web").lastError, "");
    EXPECT_EQ(bench.publication("web").reachability.state, "unreachable");
    ASSERT_TRUE(bench.publication("web").reachability.hint);
    EXPECT_EQ(bench.publication("web").reachability.hint->nodeIP, "100.64.0.1");
}

TEST(PublicationRunner, LocalServiceThatIsDownIsTold)
{
    const std::uint16_t nobody = test::freePort();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, nobody));
    EXPECT_TRUE(Peer::connectTo(port).endsInReset());
    EXPECT_EQ(bench.publication("web").lastError, "The local service at " + at(nobody) + " refused the connection.");
    EXPECT_EQ(bench.publication("web").lastActive, "");
}

TEST(PublicationRunner, FunnelIsBlockedAndADisabledOneIsClosed)
{
    const Peer service = Peer::listening();
    LabBench bench(labWith(test::freePort(), service.port(), R"(, "node_address": "127.80.0.11")"));
    PublicationSettings &settings = bench.document().publications.front().second;
    settings.disabled = true;
    bench.apply();
    EXPECT_EQ(bench.publication("web").state, "stopped");
    EXPECT_ANY_THROW(Peer::connectTo(8080, "127.80.0.11"));
    settings.disabled = false;
    settings.reach = "funnel";
    bench.apply();
    EXPECT_EQ(bench.publication("web").state, "blocked");
    EXPECT_ANY_THROW(Peer::connectTo(8080, "127.80.0.11"));
    settings.reach = "tailnet";
    bench.apply();
    EXPECT_EQ(bench.publication("web").state, "listening");
    EXPECT_NO_THROW(Peer::connectTo(8080, "127.80.0.11"));
}

TEST(PublicationRunner, GoesWithItsProfileAndTakesItsConnectionsAlong)
{
    const Peer service = Peer::listening();
    LabBench bench(labWith(test::freePort(), service.port(), R"(, "node_address": "127.80.0.13")"));
    const Peer visitor = Peer::connectTo(8080, "127.80.0.13");
    const Peer far = service.accept();
    ASSERT_TRUE(far.send("x"));
    ASSERT_EQ(visitor.receive(1), "x");
    bench.document().profiles.clear();
    bench.apply();
    EXPECT_TRUE(visitor.endsInReset());
    EXPECT_ANY_THROW(Peer::connectTo(8080, "127.80.0.13"));
    EXPECT_EQ(bench.publication("web").state, "error");
    EXPECT_EQ(bench.publication("web").lastError, "The profile \"p\" is not configured.");
    bench.document().publications.front().second.reach = "funnel";
    bench.apply();
    EXPECT_EQ(bench.publication("web").state, "blocked");
    EXPECT_EQ(bench.publication("web").lastError, "");
}

TEST(PublicationRunner, MovesWithTheNameOfItsNode)
{
    const Peer service = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, service.port()));
    bench.document().profiles.front().second.hostname = "table";
    bench.document().tunnels.front().second.target = "table.tail1.ts.net:8080";
    bench.apply();
    EXPECT_EQ(bench.publication("web").address, "table.tail1.ts.net:8080");
    const Peer visitor = Peer::connectTo(port);
    const Peer far = service.accept();
    ASSERT_TRUE(far.send("answer"));
    EXPECT_EQ(visitor.receive(6), "answer");
}

TEST(PublicationRunner, RestartDropsItsConnections)
{
    const Peer service = Peer::listening();
    LabBench bench(labWith(test::freePort(), service.port(), R"(, "node_address": "127.80.0.12")"));
    const Peer visitor = Peer::connectTo(8080, "127.80.0.12");
    const Peer far = service.accept();
    bench.call([&] { bench.traffic().restartPublication("web"); });
    EXPECT_TRUE(visitor.endsInReset());
    EXPECT_NO_THROW(Peer::connectTo(8080, "127.80.0.12"));
}

} // namespace

} // namespace veranox
