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
}

} // namespace

} // namespace veranox
