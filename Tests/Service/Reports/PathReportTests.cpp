#include "Tests/Service/Support/LabBench.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <boost/json/value_to.hpp>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const std::string lab = R"({"version": 1,
    "tailnets": {"net": {"suffix": ".tail1.ts.net",
        "hosts": {"wiki": "site", "echo": "echo", "hole": "blackhole", "down": "127.0.0.1:1", "10.1.2.3": "site"}}},
    "profiles": {
        "p": {"tailnet": "net", "settles_after_s": 2, "config": {"DisplayName": "Work", "Suffixes": [".tail1.ts.net"],
            "IPRoutes": ["10.1.0.0/16"]}},
        "q": {"tailnet": "net", "needs_login": true, "config": {"Suffixes": [".q.tail1.ts.net"]}}}})";

class PathReportOfLab : public ::testing::Test {
protected:
    PathReportOfLab() { bench.pass(2s); }

    boost::json::object report(const std::string &target, bool netcheck = true)
    {
        return boost::asio::co_spawn(bench.context(),
            bench.traffic().pathReport({.target = target, .netcheck = netcheck, .pingCount = 3}),
            boost::asio::use_future)
            .get();
    }
    static std::string text(const boost::json::value &value) { return boost::json::value_to<std::string>(value); }

    test::LabBench bench{lab};
};

TEST_F(PathReportOfLab, SiteThatAnswers)
{
    const boost::json::object found = report("http://wiki.tail1.ts.net/page?x");
    EXPECT_EQ(found.at("profile"), "p");
    EXPECT_EQ(found.at("route_type"), "suffix");
    EXPECT_EQ(found.at("rule_suffix"), ".tail1.ts.net");
    EXPECT_EQ(found.at("status").at("ok"), true);
    EXPECT_EQ(found.at("status").at("self").at("dns_name"), "veranox-p.tail1.ts.net");
    EXPECT_EQ(found.at("dns").at("ok"), true);
    EXPECT_EQ(found.at("dns").at("addresses"), boost::json::array{"127.0.0.1"});
    EXPECT_EQ(found.at("ping").at("ok"), true);
    EXPECT_EQ(found.at("ping").as_object().size(), 7U);
    EXPECT_EQ(found.at("http").at("status_code"), 200);
    EXPECT_EQ(found.at("http").at("url"), "http://wiki.tail1.ts.net:80/page?x");
    EXPECT_GT(found.at("http").at("bytes_read").to_number<int>(), 0);
    EXPECT_EQ(found.at("netcheck").at("ok"), true);
    EXPECT_EQ(text(found.at("summary")),
        "wiki.tail1.ts.net takes connections on port 80 through profile \"Work\" and answers HTTP with 200 OK.");
    EXPECT_TRUE(found.at("recommendations").as_array().empty());
}

TEST_F(PathReportOfLab, AddressInARange)
{
    const boost::json::object found = report("10.1.2.3", false);
    EXPECT_EQ(found.at("route_type"), "ip_route");
    EXPECT_EQ(found.at("ip_route"), "10.1.0.0/16");
    EXPECT_EQ(found.at("http").at("ok"), true);
    EXPECT_TRUE(found.at("netcheck").is_null());
}

TEST_F(PathReportOfLab, NothingThatOwnsIt)
{
    const boost::json::object found = report("example.org");
    EXPECT_EQ(found.at("profile"), "");
    EXPECT_THAT(text(found.at("summary")), HasSubstr("No profile owns example.org"));
    EXPECT_FALSE(found.at("recommendations").as_array().empty());
    EXPECT_THAT(text(report("http://").at("summary")), HasSubstr("no host"));
}

TEST_F(PathReportOfLab, NodeThatIsNotSignedIn)
{
    const boost::json::object found = report("x.q.tail1.ts.net");
    EXPECT_EQ(found.at("profile"), "q") << "the longest suffix wins";
    EXPECT_EQ(found.at("status").at("backend_state"), "NeedsLogin");
    EXPECT_EQ(found.at("netcheck").at("ok"), false);
    EXPECT_TRUE(found.at("ping").is_null());
    EXPECT_EQ(text(found.at("recommendations").at(0)), "Sign in to profile \"q\", then try again.");
}

TEST_F(PathReportOfLab, HostThatIsNotThere)
{
    const boost::json::object found = report("nobody.tail1.ts.net");
    EXPECT_EQ(found.at("dns").at("ok"), false);
    EXPECT_EQ(text(found.at("summary")), "The tailnet of profile \"p\" has no host \"nobody.tail1.ts.net\".");
}

TEST_F(PathReportOfLab, HostThatRefuses)
{
    const boost::json::object found = report("down.tail1.ts.net");
    EXPECT_EQ(found.at("ping").at("ok"), false);
    EXPECT_EQ(text(found.at("ping").at("error")), "down.tail1.ts.net port 80 refused the connection.");
    EXPECT_TRUE(found.at("http").is_null());
}

TEST_F(PathReportOfLab, HostThatDoesNotSpeakHttp)
{
    const boost::json::object found = report("echo.tail1.ts.net:7");
    EXPECT_EQ(found.at("ping").at("ok"), true);
    EXPECT_EQ(found.at("http").at("ok"), false);
    EXPECT_EQ(text(found.at("http").at("error")), "The host took the connection but does not speak HTTP.");
    EXPECT_EQ(text(found.at("summary")), "echo.tail1.ts.net takes connections on port 7 through profile \"Work\".");
}

TEST_F(PathReportOfLab, OnlyWhatMayBeHttpIsAskedForAPage)
{
    const boost::json::object found = report("ssh://wiki.tail1.ts.net:80");
    EXPECT_EQ(found.at("ping").at("ok"), true);
    EXPECT_TRUE(found.at("http").is_null());
    EXPECT_EQ(text(found.at("summary")), "wiki.tail1.ts.net takes connections on port 80 through profile \"Work\".");
    EXPECT_TRUE(report("ftp://wiki.tail1.ts.net:80").at("http").is_null());
    EXPECT_EQ(report("wiki.tail1.ts.net:80").at("http").at("ok"), true) << "without a scheme it is tried";
}

TEST_F(PathReportOfLab, HostThatNeverAnswersIsGivenUp)
{
    const auto begin = std::chrono::steady_clock::now();
    const boost::json::object found = report("http://hole.tail1.ts.net");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    EXPECT_EQ(text(found.at("http").at("error")), "The host took the connection but did not answer in time.");
    EXPECT_FALSE(found.at("recommendations").as_array().empty());
}

} // namespace

} // namespace veranox
