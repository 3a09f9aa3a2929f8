#include "Tests/Service/Support/ApiBed.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view file = R"({"Version": 1, "Router": {},
    "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false},
    "Profiles": {"p": {}, "unheard-of": {}}})";

constexpr std::string_view lab = R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net"}},
    "profiles": {"p": {"tailnet": "net", "needs_login": true, "approved_after_s": 2}}})";

class ProfileAction : public ::testing::Test {
protected:
    boost::json::value post(const std::string &action)
    {
        const ControlAnswer answer = bed.ask("POST", "/api/profiles/" + action);
        EXPECT_EQ(answer.status, 200U) << action;
        return answer.body;
    }

    test::ApiBed bed{file, lab};
};

TEST_F(ProfileAction, LoginAndLogout)
{
    const std::string address = "https://login.tailnet.example/lab/p/0";
    EXPECT_EQ(post("p/login"),
        (boost::json::value{{"profile", "p"}, {"action", "login"}, {"ok", false},
            {"output", "To sign in, visit " + address}, {"error", ""}, {"auth_url", address}}));
    bed.time().pass(2s);
    EXPECT_EQ(post("p/login"),
        (boost::json::value{{"profile", "p"}, {"action", "login"}, {"ok", true},
            {"output", "The node is signed in to tailnet net."}, {"error", ""}, {"auth_url", ""}}));
    EXPECT_EQ(bed.traffic().changes, 2) << "what runs over the node is told each time";
    EXPECT_EQ(post("p/logout"),
        (boost::json::value{{"profile", "p"}, {"action", "logout"}, {"ok", true},
            {"output", "The node is signed out of tailnet net."}, {"error", ""}, {"auth_url", ""}}));
    EXPECT_EQ(bed.traffic().changes, 3);
    EXPECT_EQ(bed.ask("GET", "/api/profiles").body.at(0).at("status").at("backend_state"), "NeedsLogin");
}

TEST_F(ProfileAction, OfAProfileThatTheLabDoesNotKnowFailsWithItsReason)
{
    EXPECT_EQ(post("unheard-of/login").at("ok"), false);
    EXPECT_EQ(post("unheard-of/login").at("error"),
        "The lab network does not describe a profile \"unheard-of\"; add it to the lab file.");
}

TEST_F(ProfileAction, OfAProfileThatIsNotConfiguredIsRefused)
{
    const std::pair<std::string, std::string> names[] = {
        {"x", "x"}, {"a%20b", "a b"}, {"P", "P"}, {"%C3%BC", "ü"}, {"a%0Ab", "a b"}};
    for (const auto &[inPath, shown] : names)
        for (const std::string action : {"/login", "/logout"}) {
            const ControlAnswer answer = bed.ask("POST", "/api/profiles/" + inPath + action);
            EXPECT_EQ(answer.status, 404U);
            EXPECT_EQ(test::errorOf(answer), "The profile \"" + shown + "\" is not configured.");
        }
}

TEST_F(ProfileAction, WithoutTheTokenNothingHappens)
{
    ControlRequest request = bed.request("POST", "/api/profiles/p/login");
    request.tokens = {"wrong"};
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 403U);
    bed.time().pass(1h);
    EXPECT_EQ(bed.nodes().profileStatus("p").backendState, "NeedsLogin");
}

} // namespace

} // namespace veranox
