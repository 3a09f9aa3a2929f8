#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/LabFile.h"
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

/// The states that a node goes through in the given whole seconds.
std::vector<std::string> statesOver(const std::string &lab, int seconds)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(lab), time);
    std::vector<std::string> states;
    for (int i = 0; i <= seconds; ++i) {
        states.push_back(engine.profileStatus("p").backendState);
        time.pass(1s);
    }
    return states;
}

TEST(LabEngine, NodeThatSettles)
{
    EXPECT_EQ(statesOver(labWith(R"(, "settles_after_s": 4)"), 5),
        (std::vector<std::string>{"NoState", "Starting", "Starting", "Starting", "Running", "Running"}));
}

TEST(LabEngine, NodeThatRunsAtOnce)
{
    EXPECT_EQ(statesOver(labWith(""), 1), (std::vector<std::string>{"Running", "Running"}));
}

TEST(LabEngine, NodeThatNeedsALogin)
{
    EXPECT_EQ(statesOver(labWith(R"(, "settles_after_s": 1, "needs_login": true)"), 3),
        (std::vector<std::string>{"NoState", "NeedsLogin", "NeedsLogin", "NeedsLogin"}));
}

TEST(LabEngine, MachineThatIsApproved)
{
    EXPECT_EQ(statesOver(labWith(R"(, "approved_after_s": 2)"), 2),
        (std::vector<std::string>{"NeedsMachineAuth", "NeedsMachineAuth", "Running"}));
}

TEST(LabEngine, NodeThatFails)
{
    EXPECT_EQ(statesOver(labWith(R"(, "settles_after_s": 1, "fails": "broken")"), 1),
        (std::vector<std::string>{"NoState", "Stopped"}));
    EXPECT_EQ(statesOver(labWith(R"(, "fails": "broken", "fails_after_s": 2)"), 2),
        (std::vector<std::string>{"Running", "Running", "Stopped"}));
}

TEST(LabEngine, StatusTellsErrorAndTheTimeOfTheChange)
{
    test::FakeTime time;
    const LabEngine engine(
        parseLab(labWith(R"(, "settles_after_s": 2, "fails": "broken", "fails_after_s": 10)")), time);
    const WallTime start = time.wallNow();
    EXPECT_FALSE(engine.profileStatus("p").error.empty());
    time.pass(5s);
    const NodeStatus running = engine.profileStatus("p");
    EXPECT_TRUE(running.ok);
    EXPECT_EQ(running.error, "");
    EXPECT_EQ(running.since, start + 2s);
    time.pass(1s);
    EXPECT_EQ(engine.profileStatus("p"), running) << "a status that did not change reads the same";
    time.pass(5s);
    const NodeStatus failed = engine.profileStatus("p");
    EXPECT_FALSE(failed.ok);
    EXPECT_EQ(failed.error, "broken");
    EXPECT_EQ(failed.since, start + 10s);
}

TEST(LabEngine, OnlyARunningNodeIsOk)
{
    for (const std::string profile :
        {R"(, "needs_login": true)", R"(, "approved_after_s": 9)", R"(, "fails": "x")", R"(, "settles_after_s": 9)"}) {
        test::FakeTime time;
        const LabEngine engine(parseLab(labWith(profile)), time);
        EXPECT_FALSE(engine.profileStatus("p").ok) << profile;
        EXPECT_FALSE(engine.profileStatus("p").error.empty()) << profile;
    }
}

TEST(LabEngine, ProfileThatTheLabDoesNotKnowNeedsAttention)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith("")), time);
    EXPECT_EQ(engine.profileStatus("other").backendState, "Stopped");
    EXPECT_EQ(engine.profileStatus("other").error,
        "The lab network does not describe a profile \"other\"; add it to the lab file.");
}

TunnelSettings tunnelOf(const std::string &profile)
{
    TunnelSettings settings;
    settings.profile = profile;
    settings.target = "db:1";
    return settings;
}

TEST(LabEngine, TunnelWaitsForItsNodeAndItsOwnTime)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "settles_after_s": 2)",
                               R"(, "tunnels": {"t": {"starts_after_s": 1, "active_connections": 4}})")),
        time);
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"starting", 0, ""}));
    time.pass(2s);
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"starting", 0, ""}));
    time.pass(1s);
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"listening", 4, ""}));
    EXPECT_EQ(engine.tunnelStatus("unknown", tunnelOf("p")), (TunnelStatus{"listening", 0, ""}));
}

TEST(LabEngine, TunnelsThatDoNotListen)
{
    test::FakeTime time;
    const LabEngine engine(
        parseLab(labWith("", R"(, "tunnels": {"t": {"fails": "refused", "fails_after_s": 3}})")), time);
    TunnelSettings disabled = tunnelOf("p");
    disabled.disabled = true;
    EXPECT_EQ(engine.tunnelStatus("t", disabled), (TunnelStatus{"stopped", 0, ""}));
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("nobody")).state, "error");
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("p")).state, "listening");
    time.pass(3s);
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("p")), (TunnelStatus{"error", 0, "refused"}));
}

TEST(LabEngine, TunnelOfAFailedNodeFailsToo)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "fails": "key expired")")), time);
    EXPECT_EQ(engine.tunnelStatus("t", tunnelOf("p")),
        (TunnelStatus{"error", 0, "Profile \"p\" is not running: key expired"}));
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
    return engine.publicationStatus("x", publicationOf("p"), "node").reachability;
}

TEST(LabEngine, PublicationTellsWhomThePolicyAdmits)
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

TEST(LabEngine, PublicationOverTime)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith(R"(, "settles_after_s": 2)",
                               R"(, "publications": {"x": {"starts_after_s": 1, "active_connections": 1}})")),
        time);
    EXPECT_EQ(engine.publicationStatus("x", publicationOf("p"), "node").address, "");
    time.pass(2s);
    const PublicationStatus starting = engine.publicationStatus("x", publicationOf("p"), "node");
    EXPECT_EQ(starting.state, "starting");
    EXPECT_EQ(starting.address, "node.tail1.ts.net:8443");
    EXPECT_EQ(starting.reachability, Reachability{});
    time.pass(1s);
    const PublicationStatus listening = engine.publicationStatus("x", publicationOf("p"), "node");
    EXPECT_EQ(listening.state, "listening");
    EXPECT_EQ(listening.activeConns, 1);
    EXPECT_EQ(listening.lastActive, "2025-03-01T08:15:33.000Z");
}

TEST(LabEngine, PublishedAddressWithTLS)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith("")), time);
    PublicationSettings settings = publicationOf("p");
    settings.tls = true;
    EXPECT_EQ(engine.publicationStatus("x", settings, "node").address, "https://node.tail1.ts.net:8443");
    settings.port = 443;
    EXPECT_EQ(engine.publicationStatus("x", settings, "node").address, "https://node.tail1.ts.net");
}

TEST(LabEngine, FunnelIsBlockedAndDisabledIsStopped)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(labWith("")), time);
    PublicationSettings settings = publicationOf("p");
    settings.disabled = true;
    EXPECT_EQ(engine.publicationStatus("x", settings, "n").state, "stopped");
    settings.reach = "funnel";
    EXPECT_EQ(engine.publicationStatus("x", settings, "n").state, "blocked");
    settings.disabled = false;
    EXPECT_EQ(engine.publicationStatus("x", settings, "n").state, "blocked");
    EXPECT_EQ(engine.publicationStatus("x", settings, "n").address, "");
}

} // namespace

} // namespace veranox
