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

} // namespace

} // namespace veranox
