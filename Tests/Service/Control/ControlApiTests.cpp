#include "Tests/Service/Support/ApiBed.h"
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using Then = ControlAnswer::Then;

class ControlApiTest : public ::testing::Test {
protected:
    /// A request without a token.
    ControlRequest request(const std::string &method, const std::string &target) const
    {
        ControlRequest made = bed.request(method, target);
        made.tokens.clear();
        return made;
    }

    ControlAnswer answer(const ControlRequest &request) { return test::awaitAnswer(bed.api(), request); }

    unsigned status(const std::string &method, const std::string &target)
    {
        return answer(request(method, target)).status;
    }

    unsigned statusForHosts(std::vector<std::string> hosts)
    {
        ControlRequest made = request("GET", "/api/health");
        made.hosts = std::move(hosts);
        return answer(made).status;
    }

    unsigned statusForOrigins(const std::string &method, std::vector<std::string> origins)
    {
        ControlRequest made = bed.request(method, method == "POST" ? "/api/shutdown" : "/api/health");
        made.origins = std::move(origins);
        return answer(made).status;
    }

    test::ApiBed bed;
};

TEST_F(ControlApiTest, SixReadsNeedNoToken)
{
    for (const std::string path : {"profiles", "config", "environment", "tunnels", "publications", "health"}) {
        EXPECT_EQ(status("GET", "/api/" + path), 200U) << path;
        EXPECT_EQ(status("HEAD", "/api/" + path), 200U) << path;
        EXPECT_EQ(status("GET", "/api/" + path + "?query=1"), 200U) << path;
    }
}

TEST_F(ControlApiTest, EmptyServiceAnswersEmptyLists)
{
    EXPECT_EQ(boost::json::serialize(answer(request("GET", "/api/profiles")).body), "[]");
    EXPECT_EQ(boost::json::serialize(answer(request("GET", "/api/tunnels")).body), "[]");
    EXPECT_EQ(boost::json::serialize(answer(request("GET", "/api/publications")).body), "[]");
    EXPECT_EQ(boost::json::serialize(answer(request("GET", "/api/environment")).body),
        R"({"TailscaledAvailable":false,"TailscaledBin":"tailscaled"})");
}

TEST_F(ControlApiTest, UnknownPathsAre404)
{
    for (const std::string target : {"/x", "/api", "/api/", "/api/health/", "/api//health", "/health", "/api/health/x",
             "/api/Health", "/API/health", "//api/health", "/api/profiles//login", "/api/profiles/a", "/api/healt%68x"})
        EXPECT_EQ(status("GET", target), 404U) << target;
}

TEST_F(ControlApiTest, WrongMethodsAre405AndNameTheRightOnes)
{
    for (const std::string method : {"POST", "PUT", "DELETE", "PATCH", "OPTIONS", "CONNECT", "get", "X"}) {
        const ControlAnswer given = answer(request(method, "/api/environment"));
        EXPECT_EQ(given.status, 405U) << method;
        EXPECT_EQ(given.allow, "GET, HEAD");
        EXPECT_TRUE(given.body.at("error").is_string());
    }
    EXPECT_EQ(answer(request("GET", "/api/shutdown")).allow, "POST");
    EXPECT_EQ(answer(request("DELETE", "/api/config")).allow, "GET, HEAD, POST");
    EXPECT_EQ(answer(request("GET", "/api/profiles/a%20b/login")).allow, "POST");
}

TEST_F(ControlApiTest, MalformedTargetsAre400)
{
    for (const std::string target : {"", "api/health", "http://127.0.0.1:43200/api/health", "*", "/api/%", "/api/%4",
             "/api/%zz", "/api%2fhealth", "/api/health%00"})
        EXPECT_EQ(status("GET", target), 400U) << target;
}

TEST_F(ControlApiTest, WritesNeedTheToken)
{
    ControlRequest shutdown = request("POST", "/api/shutdown");
    const std::vector<std::string> wrong[] = {
        {}, {""}, {"wrong"}, {bed.token() + " "}, {bed.token(), bed.token()}, {"wrong", bed.token()}};
    for (const std::vector<std::string> &tokens : wrong) {
        shutdown.tokens = tokens;
        const ControlAnswer given = answer(shutdown);
        EXPECT_EQ(given.status, 403U);
        EXPECT_EQ(given.then, Then::goOn) << "nothing happened";
        EXPECT_TRUE(given.body.at("error").is_string());
    }
    shutdown.tokens = {bed.token()};
    const ControlAnswer given = answer(shutdown);
    EXPECT_EQ(given.status, 200U);
    EXPECT_EQ(given.then, Then::endService);
    EXPECT_TRUE(given.body.at("status").is_string());
}

TEST_F(ControlApiTest, HostsThatAreThisService)
{
    for (const std::string host : {"127.0.0.1:43200", "localhost:43200", "LOCALHOST:43200", "[::1]:43200"})
        EXPECT_EQ(statusForHosts({host}), 200U) << host;
}

TEST_F(ControlApiTest, HostsThatAreNot)
{
    for (const std::string host : {"", "127.0.0.1", "localhost", "127.0.0.1:80", "127.0.0.1:432000", "127.0.0.1:43200 ",
             "evil.example", "evil.example:43200", "localhost.evil.example:43200", "127.0.0.1.evil.example:43200",
             "127.0.0.2:43200", "0.0.0.0:43200", "localhost.:43200", "::1:43200", "[::]:43200", "user@127.0.0.1:43200",
             "127.0.0.1:43200,evil.example", "127.0.0.1:043200", "2130706433:43200", "0x7f000001:43200"})
        EXPECT_EQ(statusForHosts({host}), 421U) << host;
    EXPECT_EQ(statusForHosts({}), 421U);
    EXPECT_EQ(statusForHosts({"127.0.0.1:43200", "127.0.0.1:43200"}), 421U);
    EXPECT_EQ(statusForHosts({"127.0.0.1:43200", "evil.example"}), 421U);
}

TEST_F(ControlApiTest, OnTheHttpPortTheHostNeedsNone)
{
    ControlApi onPort80(bed.parts(80, bed.traffic()), RequestGuard(ControlToken::random(), 80));
    ControlRequest made = request("GET", "/api/health");
    made.hosts = {"localhost"};
    EXPECT_EQ(test::awaitAnswer(onPort80, made).status, 200U);
    made.hosts = {"localhost:43200"};
    EXPECT_EQ(test::awaitAnswer(onPort80, made).status, 421U);
}

TEST_F(ControlApiTest, OriginsOfOurOwnMayRead)
{
    for (const std::string origin : {"http://127.0.0.1:43200", "http://localhost:43200", "http://[::1]:43200"})
        EXPECT_EQ(statusForOrigins("GET", {origin}), 200U) << origin;
}

TEST_F(ControlApiTest, OtherOriginsMayNot)
{
    for (const std::string origin : {"", "null", "https://127.0.0.1:43200", "http://127.0.0.1", "http://127.0.0.1:80",
             "http://evil.example", "http://evil.example:43200", "file://", "http://127.0.0.1:43200/",
             "http://localhost:43200.evil.example", "chrome-extension://abc"})
        EXPECT_EQ(statusForOrigins("GET", {origin}), 400U) << origin;
    EXPECT_EQ(statusForOrigins("GET", {"http://127.0.0.1:43200", "http://evil.example"}), 400U);
}

TEST_F(ControlApiTest, OnlyWhatItsUserTypedOrOurOwnPageMayAskThroughABrowser)
{
    const std::pair<std::vector<std::string>, unsigned> table[] = {
        {{}, 200},
        {{"none"}, 200},
        {{"same-origin"}, 200},
        {{"none", "same-origin"}, 200},
        {{"cross-site"}, 400},
        {{"same-site"}, 400}, // another port of this computer, as of a page that comes through a tunnel
        {{""}, 400},
        {{"None"}, 400},
        {{"none, cross-site"}, 400},
        {{"none", "cross-site"}, 400},
        {{"cross-site", "none"}, 400},
    };
    for (const std::string target : {"/", "/status.css", "/api/health", "/api/config", "/api/reports/path?target=a"})
        for (const auto &[sites, status] : table) {
            ControlRequest made = request("GET", target);
            made.sites = sites;
            const ControlAnswer given = answer(made);
            EXPECT_EQ(given.status, status) << target << " " << testing::PrintToString(sites);
            if (status == 400U) {
                EXPECT_EQ(
                    test::errorOf(given), "The Sec-Fetch-Site header tells of a web page that is not of this service.");
                EXPECT_EQ(given.then, Then::closeConnection);
            }
        }
    EXPECT_EQ(bed.traffic().questions.size(), 4U) << "what is refused asks nobody";
}

TEST_F(ControlApiTest, NoOriginMayWriteEvenWithTheToken)
{
    EXPECT_EQ(statusForOrigins("POST", {}), 200U);
    for (const std::string origin : {"http://127.0.0.1:43200", "http://evil.example", "null", ""})
        EXPECT_EQ(statusForOrigins("POST", {origin}), 400U) << origin;
}

TEST_F(ControlApiTest, StrangersAreCutOffAndTokenRefusalsAreNot)
{
    ControlRequest stranger = request("GET", "/api/health");
    stranger.hosts = {"evil.example"};
    ASSERT_TRUE(bed.api().refuseEarly(stranger));
    EXPECT_EQ(bed.api().refuseEarly(stranger)->then, Then::closeConnection);
    ControlRequest guess = request("POST", "/api/shutdown");
    guess.tokens = {bed.token()};
    EXPECT_FALSE(bed.api().refuseEarly(guess));
    guess.tokens = {"guess"};
    ASSERT_TRUE(bed.api().refuseEarly(guess)) << "before its body is there";
    EXPECT_EQ(bed.api().refuseEarly(guess)->status, 403U);
    EXPECT_EQ(bed.api().refuseEarly(guess)->then, Then::goOn);
}

TEST(RequestTarget, IsTakenApart)
{
    using Segments = std::vector<std::string>;
    EXPECT_EQ(parseTarget("/"), (RequestTarget{{""}, ""}));
    EXPECT_EQ(parseTarget("/a/b?c=d&e?f"), (RequestTarget{Segments{"a", "b"}, "c=d&e?f"}));
    EXPECT_EQ(parseTarget("/a%20b/%C3%BC"), (RequestTarget{Segments{"a b", "ü"}, ""}));
    EXPECT_EQ(parseTarget("/a//b/"), (RequestTarget{Segments{"a", "", "b", ""}, ""}));
    EXPECT_EQ(parseTarget("?"), std::nullopt);
}

} // namespace

} // namespace veranox
