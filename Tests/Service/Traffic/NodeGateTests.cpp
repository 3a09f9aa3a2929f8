#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/NoNodeEngine.h"
#include "Service/Traffic/NodeGate.h"
#include "Tests/Service/Support/FakeTime.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;

TEST(NodeGate, SaysWhyNothingRunsWithoutAnEngine)
{
    const NoNodeEngine engine(WallTime{});
    const NodeGate gate(engine);
    EXPECT_EQ(gate.tunnelStatus("t", {}).state, "error");
    EXPECT_EQ(gate.tunnelStatus("t", {}).lastError, engine.profileStatus("p").error);
    EXPECT_EQ(gate.publicationStatus("x", {}, "n").state, "error");
    PublicationSettings funnel;
    funnel.reach = "funnel";
    EXPECT_EQ(gate.publicationStatus("x", funnel, "n").state, "blocked");
    TunnelSettings disabled;
    disabled.disabled = true;
    EXPECT_EQ(gate.tunnelStatus("t", disabled), TunnelStatus{});
}

TEST(NodeGate, FollowsTheNode)
{
    test::FakeTime time;
    const LabEngine engine(parseLab(R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net"}},
        "profiles": {"p": {"tailnet": "net", "settles_after_s": 2, "fails": "broken", "fails_after_s": 5}}})"),
        time);
    const NodeGate gate(engine);
    TunnelSettings tunnel;
    tunnel.profile = "p";
    PublicationSettings publication;
    publication.profile = "p";
    publication.port = 8443;
    EXPECT_EQ(gate.tunnelStatus("t", tunnel), (TunnelStatus{"starting", 0, ""}));
    EXPECT_EQ(gate.publicationStatus("x", publication, "node").state, "starting");
    EXPECT_EQ(gate.publicationStatus("x", publication, "node").address, "");
    time.pass(2s);
    EXPECT_EQ(gate.tunnelStatus("t", tunnel), (TunnelStatus{"listening", 0, ""}));
    EXPECT_EQ(gate.publicationStatus("x", publication, "node").state, "listening");
    EXPECT_EQ(gate.publicationStatus("x", publication, "node").address, "node.tail1.ts.net:8443");
    time.pass(3s);
    EXPECT_EQ(gate.tunnelStatus("t", tunnel), (TunnelStatus{"error", 0, "broken"}));
    EXPECT_EQ(gate.publicationStatus("x", publication, "node").lastError, "broken");
}

} // namespace

} // namespace veranox
