#include "Service/Reports/PathTarget.h"
#include "Tests/Service/Support/LabBench.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <boost/json/value_to.hpp>
#include <gmock/gmock.h>
#include <thread>

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

/// What a report tells of a host that sends these bytes to whoever connects.
boost::json::object reportOfHostThatSays(const std::string &answer)
{
    const test::Peer host = test::Peer::listening();
    test::LabBench bench(R"({"version": 1, "tailnets": {"net": {"suffix": ".t", "hosts": {"far": "127.0.0.1:)"
        + std::to_string(host.port())
        + R"("}}}, "profiles": {"p": {"tailnet": "net", "config": {"Suffixes": [".t"]}}}})");
    std::thread server([&] {
        for (int connection = 0; connection < 2; ++connection) { // the ping and the page
            const test::Peer peer = host.accept();
            peer.send(answer);
            peer.finishSending();
            peer.receiveAll();
        }
    });
    boost::json::object report = boost::asio::co_spawn(bench.context(),
        bench.traffic().pathReport({.target = "http://far.t/", .netcheck = false, .pingCount = 1}),
        boost::asio::use_future)
                                     .get();
    server.join();
    return report;
}

TEST(PathReportOfAFarHost, WhatItSaysOfItselfIsTakenAsText)
{
    const boost::json::object found = reportOfHostThatSays(
        "HTTP/1.1 200 Gr\xfc\xdf \xe2\x80\xae\tGott\r\nContent-Type: text/\xff\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(found.at("http").at("status"), "200 Gr??   Gott");
    EXPECT_EQ(found.at("http").at("content_type"), "text/?");
    EXPECT_EQ(found.at("summary"),
        "far.t takes connections on port 80 through profile \"p\" and answers HTTP with 200 Gr??   Gott.");
}

TEST(PathReportOfAFarHost, WhatItSaysOfItselfHasABound)
{
    const std::string much(4000, 'x');
    const boost::json::object found =
        reportOfHostThatSays("HTTP/1.1 200 " + much + "\r\nContent-Type: " + much + "\r\nContent-Length: 0\r\n\r\n");
    const std::string shown = much.substr(0, 197) + "…";
    EXPECT_EQ(boost::json::value_to<std::string>(found.at("http").at("status")), "200 " + shown);
    EXPECT_EQ(boost::json::value_to<std::string>(found.at("http").at("content_type")), shown);
}

TEST_F(PathReportOfLab, HostThatNeverAnswersIsGivenUp)
{
    const auto begin = std::chrono::steady_clock::now();
    const boost::json::object found = report("http://hole.tail1.ts.net");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    EXPECT_EQ(text(found.at("http").at("error")), "The host took the connection but did not answer in time.");
    EXPECT_FALSE(found.at("recommendations").as_array().empty());
}

TEST(PathTarget, IsTakenApart)
{
    EXPECT_EQ(parsePathTarget("Wiki.Net."), (PathTarget{"", "wiki.net", 80, "/"}));
    EXPECT_EQ(parsePathTarget("https://u@a.net/x?y#z"), (PathTarget{"https", "a.net", 443, "/x?y"}));
    EXPECT_EQ(parsePathTarget("http://a.net:8080?y"), (PathTarget{"http", "a.net", 8080, "/?y"}));
    EXPECT_EQ(parsePathTarget("a.net:22"), (PathTarget{"", "a.net", 22, "/"}));
    EXPECT_EQ(parsePathTarget("fd00::1"), (PathTarget{"", "fd00::1", 80, "/"}));
    EXPECT_EQ(parsePathTarget("http://[fd00::1]:81/"), (PathTarget{"http", "fd00::1", 81, "/"}));
    for (const std::string bad : {"", "http://", "a b", ":80", "a:0", "a:99999", "http:///x"})
        EXPECT_EQ(parsePathTarget(bad), std::nullopt) << bad;
}

} // namespace

} // namespace veranox
