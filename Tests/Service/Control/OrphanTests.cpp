#include "Tests/Service/Support/ApiBed.h"
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace veranox {

namespace {

/// A file whose tunnels and publications stand on a profile that is gone.
constexpr std::string_view file = R"({"Version": 1, "Router": {},
    "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false},
    "Profiles": {"work": {}},
    "Tunnels": {
        "on": {"Profile": "gone", "Target": "a:1", "Listen": "127.0.0.1:5"},
        "off": {"Profile": "gone", "Target": "a:1", "Listen": "127.0.0.1:6", "Disabled": true}},
    "Publications": {
        "on": {"Profile": "gone", "Target": "127.0.0.1:7", "Port": 1},
        "off": {"Profile": "gone", "Target": "127.0.0.1:7", "Port": 2, "Disabled": true},
        "funnel": {"Profile": "gone", "Target": "127.0.0.1:7", "Port": 3, "Reach": "funnel"}}})";

class Orphans : public ::testing::Test {
protected:
    /// The errors of a list, in its order.
    std::vector<std::string> errors(const std::string &path)
    {
        std::vector<std::string> texts;
        for (const boost::json::value &record : bed.ask("GET", path).body.as_array())
            texts.emplace_back(record.at("LastError").as_string());
        return texts;
    }

    const std::string gone = "The profile \"gone\" is not configured.";
    test::ApiBed bed{file};
};

TEST_F(Orphans, OnlyWhatWouldRunComplains)
{
    EXPECT_EQ(errors("/api/tunnels"), (std::vector<std::string>{gone, ""}));
    EXPECT_EQ(errors("/api/publications"), (std::vector<std::string>{gone, "", ""}));
}

TEST_F(Orphans, DoNotHinderASave)
{
    const std::string config = boost::json::serialize(bed.ask("GET", "/api/config").body);
    const ControlAnswer answer = bed.ask("POST", "/api/config", config);
    EXPECT_EQ(answer.status, 200U) << test::errorOf(answer);
}

} // namespace

} // namespace veranox
