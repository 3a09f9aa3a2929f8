#include "Service/Nodes/Lab/LabConfig.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/Lab/LabGate.h"
#include "Tests/Service/Support/FakeTime.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;

/// Every state of the demo once it has settled, by name.
struct DemoStates {
    std::vector<std::string> profiles, tunnels, publications;
};

DemoStates demoAfter(std::chrono::milliseconds passed)
{
    test::FakeTime time;
    const LabNetwork demo = loadLab("demo");
    ConfigDocument document;
    EXPECT_TRUE(addLabConfig(demo, document));
    const LabEngine engine(demo, time);
    const LabGate gate(engine);
    time.pass(passed);
    DemoStates states;
    for (const auto &[name, profile] : document.profiles)
        states.profiles.push_back(name + ":" + engine.profileStatus(name).backendState);
    for (const auto &[name, tunnel] : document.tunnels)
        states.tunnels.push_back(name + ":" + gate.tunnelStatus(name, tunnel).state);
    for (const auto &[name, publication] : document.publications) {
        const PublicationStatus status = gate.publicationStatus(name, publication, "n");
        states.publications.push_back(name + ":" + status.state + ":" + status.reachability.state);
    }
    return states;
}

TEST(LabDemo, BeginsWithEverythingUnsettled)
{
    const DemoStates states = demoAfter(0s);
    EXPECT_EQ(states.profiles,
        (std::vector<std::string>{
            "work:NoState", "home:NoState", "travel:NoState", "customer:NoState", "studio:NoState"}));
}

TEST(LabDemo, ShowsEveryStateOnceSettled)
{
    const DemoStates states = demoAfter(7s);
    EXPECT_EQ(states.profiles,
        (std::vector<std::string>{
            "work:Running", "home:Running", "travel:Running", "customer:NeedsLogin", "studio:Stopped"}));
    EXPECT_EQ(states.tunnels,
        (std::vector<std::string>{"postgres:listening", "redis:listening", "metrics:listening", "ledger:error",
            "nas:stopped", "customer-db:starting"}));
    EXPECT_EQ(states.publications,
        (std::vector<std::string>{"docs:listening:reachable", "webhook:error:", "media:listening:unreachable",
            "notes:listening:reachable", "printer:stopped:", "launch:blocked:"}));
}

TEST(LabConfig, AddsWhatIsMissingAndLeavesTheRest)
{
    const LabNetwork lab = parseLab(R"({"version": 1, "tailnets": {"net": {"suffix": ".t"}}, "profiles": {
        "a": {"tailnet": "net", "config": {"DisplayName": "from the lab"}},
        "b": {"tailnet": "net", "config": {"DisplayName": "from the lab"}},
        "c": {"tailnet": "net"}}})");
    ConfigDocument document;
    document.profiles.emplace_back("a", ProfileSettings{}).second.displayName = "mine";
    EXPECT_TRUE(addLabConfig(lab, document));
    ASSERT_EQ(document.profiles.size(), 2U);
    EXPECT_EQ(document.profiles[0].second.displayName, "mine");
    EXPECT_EQ(document.profiles[1].first, "b");
    EXPECT_FALSE(addLabConfig(lab, document)) << "nothing is added twice";
}

} // namespace

} // namespace veranox
