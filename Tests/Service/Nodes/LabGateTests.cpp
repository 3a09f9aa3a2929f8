#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/Lab/LabGate.h"
#include "Tests/Service/Support/FakeTime.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;

std::string labWith(const std::string &profile, const std::string &rest = "")
{
    return R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net"}},
        "profiles": {"p": {"tailnet": "net")"
        + profile + "}}" + rest + "}";
}

TunnelSettings tunnelOf(const std::string &profile)
{
    TunnelSettings settings;
    settings.profile = profile;
    settings.target = "db:1";
    return settings;
}

TEST(LabGate, TunnelWaitsForItsNodeAndItsOwnTime)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "settles_after_s": 2)",
                               R"(, "tunnels": {"t": {"starts_after_s": 1, "active_connections": 4}})")),
        time);
    const LabGate gate(engine);
    EXPECT_EQ(gate.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"starting", 0, ""}));
    time.pass(2s);
    EXPECT_EQ(gate.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"starting", 0, ""}));
    time.pass(1s);
    EXPECT_EQ(gate.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"listening", 4, ""}));
    EXPECT_EQ(gate.tunnelStatus("unknown", tunnelOf("p")), (TunnelStatus{"listening", 0, ""}));
}

TEST(LabGate, TunnelsThatDoNotListen)
{
    test::FakeTime time;
    const LabEngine engine(
        parseLab(labWith("", R"(, "tunnels": {"t": {"fails": "refused", "fails_after_s": 3}})")), time);
    const LabGate gate(engine);
    TunnelSettings disabled = tunnelOf("p");
    disabled.disabled = true;
    EXPECT_EQ(gate.tunnelStatus("t", disabled), (TunnelStatus{"stopped", 0, ""}));
    EXPECT_EQ(gate.tunnelStatus("t", tunnelOf("nobody")).state, "error");
    EXPECT_EQ(gate.tunnelStatus("t", tunnelOf("p")).state, "listening");
    time.pass(3s);
    EXPECT_EQ(gate.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"error", 0, "refused"}));
}

TEST(LabGate, TunnelOfAFailedNodeFailsToo)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "fails": "key expired")")), time);
    const LabGate gate(engine);
    EXPECT_EQ(
        gate.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"error", 0, "Profile \"p\" is not running: key expired"}));
}

PublicationSettings publicationOf(const std::string &profile)
{
    PublicationSettings settings;
    settings.profile = profile;
    settings.port = 8443;
    return settings;
}

Reachability reachabilityUnder(const std::string &policy)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "policy": )" + policy)), time);
    const LabGate gate(engine);
    return gate.publicationStatus("x", publicationOf("p"), "node").reachability;
}

TEST(LabGate, PublicationTellsWhomThePolicyAdmits)
{
    EXPECT_EQ(reachabilityUnder(R"({"admits": "everyone"})"), (Reachability{"reachable", 0, true, "", {}}));
    EXPECT_EQ(reachabilityUnder(R"({"admits": 3})"), (Reachability{"reachable", 3, false, "", {}}));
    EXPECT_EQ(reachabilityUnder(R"({"admits": "unknown", "detail": "no answer"})"),
        (Reachability{"unknown", 0, false, "no answer", {}}));
    EXPECT_EQ(
        reachabilityUnder(
            R"({"admits": "nobody", "hint": {"host_alias": "h", "node_ip": "100.64.0.9", "policy_url": "https://p"}})"),
        (Reachability{"unreachable", 0, false, "",
            PolicyHint{.hostAlias = "h",
                .nodeIP = "100.64.0.9",
                .source = "autogroup:member",
                .hostsEntry = R"("h": "100.64.0.9",)",
                .grant = R"({"src": ["autogroup:member"], "dst": ["h"], "ip": ["*"]},)",
                .policyURL = "https://p"}}));
}

TEST(LabGate, PublicationOverTime)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "settles_after_s": 2)",
                               R"(, "publications": {"x": {"starts_after_s": 1, "active_connections": 1}})")),
        time);
    const LabGate gate(engine);
    EXPECT_EQ(gate.publicationStatus("x", publicationOf("p"), "node").address, "");
    time.pass(2s);
    const PublicationStatus starting = gate.publicationStatus("x", publicationOf("p"), "node");
    EXPECT_EQ(starting.state, "starting");
    EXPECT_EQ(starting.address, "node.tail1.ts.net:8443");
    EXPECT_EQ(starting.reachability, Reachability{});
    time.pass(1s);
    const PublicationStatus listening = gate.publicationStatus("x", publicationOf("p"), "node");
    EXPECT_EQ(listening.state, "listening");
    EXPECT_EQ(listening.activeConns, 1);
    EXPECT_EQ(listening.lastActive, "2025-03-01T08:15:33.000Z");
}

TEST(LabGate, PublishedAddressWithTLS)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith("")), time);
    const LabGate gate(engine);
    PublicationSettings settings = publicationOf("p");
    settings.tls = true;
    EXPECT_EQ(gate.publicationStatus("x", settings, "node").address, "https://node.tail1.ts.net:8443");
    settings.port = 443;
    EXPECT_EQ(gate.publicationStatus("x", settings, "node").address, "https://node.tail1.ts.net");
}

TEST(LabGate, FunnelIsBlockedAndDisabledIsStopped)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith("")), time);
    const LabGate gate(engine);
    PublicationSettings settings = publicationOf("p");
    settings.disabled = true;
    EXPECT_EQ(gate.publicationStatus("x", settings, "n").state, "stopped");
    settings.reach = "funnel";
    EXPECT_EQ(gate.publicationStatus("x", settings, "n").state, "blocked");
    settings.disabled = false;
    EXPECT_EQ(gate.publicationStatus("x", settings, "n").state, "blocked");
    EXPECT_EQ(gate.publicationStatus("x", settings, "n").address, "");
}

} // namespace

} // namespace veranox
