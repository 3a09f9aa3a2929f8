#include "Tests/Service/Support/LabBench.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <boost/json/value_to.hpp>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <thread>

namespace veranox {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A report on a host of the tailnet, and the request that the host got.
struct FarReport {
    boost::json::object found;
    std::string request;
};

/// The host sends these bytes to whoever connects, the last of them again and again when it is `endless`.
FarReport reportOn(const std::string &answer, const std::string &path = "/", const std::string &endless = "")
{
    const test::Peer host = test::Peer::listening();
    test::LabBench bench(R"({"version": 1, "tailnets": {"net": {"suffix": ".t", "hosts": {"far": "127.0.0.1:)"
        + std::to_string(host.port())
        + R"("}}}, "profiles": {"p": {"tailnet": "net", "config": {"Suffixes": [".t"]}}}})");
    FarReport report;
    std::thread server([&] {
        for (int connection = 0; connection < 2; ++connection) { // the ping and the page
            const test::Peer peer = host.accept();
            bool goesOn = peer.send(answer);
            while (goesOn && !endless.empty())
                goesOn = peer.send(endless);
            peer.finishSending();
            report.request = peer.receiveAll();
        }
    });
    report.found = boost::asio::co_spawn(bench.context(),
        bench.traffic().pathReport({.target = "http://far.t:8080" + path, .netcheck = false, .pingCount = 1}),
        boost::asio::use_future)
                       .get();
    server.join();
    return report;
}

TEST(PathReportOfAFarHost, WhatItSaysOfItselfIsTakenAsText)
{
    const boost::json::object found =
        reportOn("HTTP/1.1 200 Gr\xfc\xdf \xe2\x80\xae\tGott\r\nContent-Type: text/\xff\r\nContent-Length: 0\r\n\r\n")
            .found;
    EXPECT_EQ(found.at("http").at("status"), "200 Gr??   Gott");
    EXPECT_EQ(found.at("http").at("content_type"), "text/?");
    EXPECT_EQ(found.at("summary"),
        "far.t takes connections on port 8080 through profile \"p\" and answers HTTP with 200 Gr??   Gott.");
}

TEST(PathReportOfAFarHost, WhatItSaysOfItselfHasABound)
{
    const std::string much(4000, 'x');
    const boost::json::object found =
        reportOn("HTTP/1.1 200 " + much + "\r\nContent-Type: " + much + "\r\nContent-Length: 0\r\n\r\n").found;
    const std::string shown = much.substr(0, 197) + "…";
    EXPECT_EQ(boost::json::value_to<std::string>(found.at("http").at("status")), "200 " + shown);
    EXPECT_EQ(boost::json::value_to<std::string>(found.at("http").at("content_type")), shown);
}

TEST(PathReportOfAFarHost, ALongPageIsAnAnswer)
{
    const std::string page(400 * 1024, 'x');
    const boost::json::object found =
        reportOn("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(page.size()) + "\r\n\r\n" + page).found;
    EXPECT_EQ(found.at("http").at("status"), "200 OK");
    EXPECT_EQ(found.at("http").at("status_code"), 200);
    EXPECT_EQ(found.at("http").at("error"), "");
    EXPECT_GE(found.at("http").at("bytes_read").to_number<int>(), 256 * 1024);
    EXPECT_LT(found.at("http").at("bytes_read").to_number<int>(), 300 * 1024);
    EXPECT_EQ(found.at("summary"),
        "far.t takes connections on port 8080 through profile \"p\" and answers HTTP with 200 OK.");
}

TEST(PathReportOfAFarHost, APageWithoutEndIsAnAnswer)
{
    const boost::json::object found = reportOn("HTTP/1.1 200 OK\r\n\r\n", "/", std::string(64 * 1024, 'x')).found;
    EXPECT_EQ(found.at("http").at("ok"), true);
    EXPECT_LT(found.at("http").at("bytes_read").to_number<int>(), 300 * 1024);
}

TEST(PathReportOfAFarHost, WhatComesOnTheWayToTheAnswerIsPassedOver)
{
    const boost::json::object found =
        reportOn("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n"
                 "HTTP/1.1 404 Not Found\r\nContent-Length: 2\r\n\r\nno")
            .found;
    EXPECT_EQ(found.at("http").at("status"), "404 Not Found");
    EXPECT_EQ(found.at("http").at("bytes_read"), 2);
}

TEST(PathReportOfAFarHost, ContinueAloneIsNoAnswer)
{
    const boost::json::object found = reportOn("HTTP/1.1 100 Continue\r\n\r\n").found;
    EXPECT_EQ(found.at("http").at("ok"), false);
    EXPECT_EQ(found.at("http").at("status"), "");
    EXPECT_EQ(found.at("http").at("error"), "The host took the connection and closed it without an answer.");
}

TEST(PathReportOfAFarHost, IsAskedByItsPortAndWithNothingThatMayNotStandInARequest)
{
    EXPECT_THAT(reportOn("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", "/a b\\c?d e").request,
        AllOf(StartsWith("GET /a%20b%5Cc?d%20e HTTP/1.1\r\n"), HasSubstr("\r\nHost: far.t:8080\r\n")));
}

/// A beginning of an answer and what goes on for ever behind it.
struct Endless {
    std::string what;
    std::string begin;
    std::string more;
};

void PrintTo(const Endless &endless, std::ostream *stream)
{
    *stream << endless.what;
}

class EndlessAnswers : public ::testing::TestWithParam<Endless> { };

/// How many bytes of memory this process has used at the most.
long peakMemory()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

TEST_P(EndlessAnswers, TakeABoundedAmountOfMemory)
{
    constexpr long most = 16L * 1024 * 1024;
    reportOn(
        "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"); // what every first report takes, under a sanitizer above all
    const long before = peakMemory();
    const boost::json::object found = reportOn(GetParam().begin, "/", GetParam().more).found;
    EXPECT_TRUE(found.at("http").is_object());
    EXPECT_LT(peakMemory() - before, most);
}

const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
const std::string block(64 * 1024, '0');

INSTANTIATE_TEST_SUITE_P(PathReport, EndlessAnswers,
    ::testing::Values(Endless{"reason", "HTTP/1.1 200 ", block}, Endless{"field", "HTTP/1.1 200 OK\r\nX: ", block},
        Endless{"fields", "HTTP/1.1 200 OK\r\n", "X-Field: x\r\n"}, Endless{"chunk extension", chunked + "1;x=", block},
        Endless{"chunk size", chunked, block}, Endless{"trailers", chunked + "0\r\n", "X-Field: x\r\n"},
        Endless{"trailer", chunked + "0\r\nX: ", block},
        Endless{"answers on the way", "", "HTTP/1.1 100 Continue\r\n\r\n"}));

} // namespace

} // namespace veranox
