#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/NoNodeEngine.h"
#include "Tests/Service/Support/Awaited.h"
#include "Tests/Service/Support/FakeTime.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// The node of the profile "p", described by the given keys.
class LabNode {
public:
    explicit LabNode(const std::string &keys = "")
        : m_engine(parseLab(R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net"}},
              "profiles": {"p": {"tailnet": "net")"
                       + keys + "}}}"),
              m_time)
    {
    }

    NodeAction login() { return test::awaited(m_engine.login("p")); }
    NodeAction logout() { return test::awaited(m_engine.logout("p")); }
    std::string state() const { return m_engine.profileStatus("p").backendState; }
    NodeStatus status() const { return m_engine.profileStatus("p"); }
    std::string stateAfter(std::chrono::milliseconds time)
    {
        m_time.pass(time);
        return state();
    }
    LabEngine &engine() { return m_engine; }
    WallTime now() const { return m_time.wallNow(); }

private:
    test::FakeTime m_time;
    LabEngine m_engine;
};

const std::string asking = R"(, "settles_after_s": 1, "needs_login": true, "approved_after_s": 2)";

TEST(LabLogin, IsApprovedSoLongAfterItWasBegun)
{
    LabNode node(asking);
    EXPECT_EQ(node.stateAfter(60s), "NeedsLogin") << "nobody has signed in";
    const NodeAction begun = node.login();
    EXPECT_FALSE(begun.ok) << "a person has to approve it first";
    EXPECT_EQ(begun.error, "");
    EXPECT_THAT(begun.authURL, StartsWith("https://login.tailnet.example/lab/p/"));
    EXPECT_THAT(begun.output, HasSubstr(begun.authURL));
    EXPECT_EQ(node.stateAfter(1999ms), "NeedsLogin");
    EXPECT_EQ(node.stateAfter(1ms), "Running");
    EXPECT_EQ(node.status().since, node.now());
    EXPECT_TRUE(node.login().ok) << "it is signed in";
}

TEST(LabLogin, ASecondOneIsTheSameAndDoesNotBeginAnew)
{
    LabNode node(asking);
    node.stateAfter(1s);
    const NodeAction first = node.login();
    node.stateAfter(1500ms);
    EXPECT_EQ(node.login(), first);
    EXPECT_EQ(node.stateAfter(500ms), "Running");
}

TEST(LabLogin, WithoutATimeItIsNeverApproved)
{
    LabNode node(R"(, "needs_login": true)");
    EXPECT_NE(node.login().authURL, "");
    EXPECT_EQ(node.stateAfter(24h), "NeedsLogin");
}

TEST(LabLogin, OfANodeThatRunsIsDoneAlready)
{
    LabNode node;
    const NodeAction login = node.login();
    EXPECT_TRUE(login.ok);
    EXPECT_EQ(login.authURL, "");
    EXPECT_EQ(node.state(), "Running");
}

TEST(LabLogin, IsRefusedWhereItCannotHelp)
{
    const std::pair<std::string, std::string> cases[] = {
        {R"(, "settles_after_s": 9)", "The node is still starting; sign in once it asks for a login."},
        {R"(, "approved_after_s": 9)", "The node waits for an admin of its tailnet to approve it."},
        {R"(, "fails": "key expired")", "key expired"}};
    for (const auto &[keys, error] : cases) {
        LabNode node(keys);
        const std::string before = node.state();
        EXPECT_EQ(node.login(), (NodeAction{.ok = false, .output = "", .error = error, .authURL = ""}));
        EXPECT_EQ(node.state(), before);
    }
}

TEST(LabLogout, MakesTheNodeNeedALogin)
{
    LabNode node;
    node.stateAfter(5s);
    EXPECT_TRUE(node.logout().ok);
    EXPECT_EQ(node.state(), "NeedsLogin");
    EXPECT_EQ(node.status().since, node.now());
    EXPECT_FALSE(node.status().error.empty());
    EXPECT_EQ(node.stateAfter(24h), "NeedsLogin");
    EXPECT_TRUE(node.login().ok) << "approved at once, as its file names no time";
    EXPECT_EQ(node.state(), "Running");
}

TEST(LabLogout, TakesBackALoginThatIsUnderWay)
{
    LabNode node(asking);
    node.stateAfter(1s);
    const std::string firstAddress = node.login().authURL;
    node.stateAfter(1s);
    EXPECT_TRUE(node.logout().ok);
    EXPECT_EQ(node.stateAfter(5s), "NeedsLogin");
    EXPECT_NE(node.login().authURL, firstAddress);
    EXPECT_EQ(node.stateAfter(2s), "Running");
}

TEST(LabLogout, OfANodeThatStartsLeavesItWithoutALogin)
{
    LabNode node(R"(, "settles_after_s": 9)");
    EXPECT_TRUE(node.logout().ok);
    EXPECT_EQ(node.state(), "NeedsLogin");
}

TEST(LabLogout, CannotHelpANodeThatFailed)
{
    LabNode node(R"(, "fails": "key expired")");
    EXPECT_EQ(node.logout().error, "key expired");
    EXPECT_EQ(node.state(), "Stopped");
}

TEST(LabLogin, AndLogoutOfAProfileThatTheLabDoesNotKnow)
{
    LabNode node;
    for (const NodeAction &action :
        {test::awaited(node.engine().login("other")), test::awaited(node.engine().logout("other"))}) {
        EXPECT_FALSE(action.ok);
        EXPECT_EQ(action.error, "The lab network does not describe a profile \"other\"; add it to the lab file.");
    }
}

TEST(NoNodeEngine, SignsNobodyInOrOut)
{
    NoNodeEngine engine(WallTime{});
    for (const NodeAction &action : {test::awaited(engine.login("p")), test::awaited(engine.logout("p"))}) {
        EXPECT_FALSE(action.ok);
        EXPECT_EQ(action.authURL, "");
        EXPECT_EQ(action.error, engine.profileStatus("p").error);
    }
}

TEST(LabLogin, TellsThatANodeMayHaveChanged)
{
    LabNode node(asking);
    int changes = 0;
    node.engine().setChanged([&] { ++changes; });
    node.stateAfter(1s);
    EXPECT_EQ(changes, 0);
    node.login();
    EXPECT_EQ(changes, 1);
    node.logout();
    EXPECT_EQ(changes, 2);
    node.engine().setChanged({});
    node.login();
    EXPECT_EQ(changes, 2);
}

} // namespace

} // namespace veranox
