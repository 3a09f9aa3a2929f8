#include "Service/Nodes/NoNodeEngine.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

TEST(NoNodeEngine, SaysWhyNothingRuns)
{
    const NoNodeEngine engine(WallTime{});
    const NodeStatus status = engine.profileStatus("any");
    EXPECT_FALSE(status.ok);
    EXPECT_EQ(status.backendState, "Stopped");
    EXPECT_TRUE(status.error.starts_with("No network engine: start the service with --lab"));
    EXPECT_EQ(engine.tunnelStatus("t", {}).state, "error");
    EXPECT_EQ(engine.tunnelStatus("t", {}).lastError, status.error);
    EXPECT_EQ(engine.publicationStatus("x", {}, "n").state, "error");
    PublicationSettings funnel;
    funnel.reach = "funnel";
    EXPECT_EQ(engine.publicationStatus("x", funnel, "n").state, "blocked");
    TunnelSettings disabled;
    disabled.disabled = true;
    EXPECT_EQ(engine.tunnelStatus("t", disabled), TunnelStatus{});
}

} // namespace

} // namespace veranox
