#include "Service/Control/ControlApi.h"
#include "Service/Nodes/NoNodeEngine.h"
#include "Tests/Service/Support/FakeTraffic.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using Then = ControlAnswer::Then;

class ControlApiTest : public ::testing::Test {
protected:
    ControlApiTest()
        : api(store, engine, traffic, RequestGuard(writtenToken(), 43200),
              [](const std::string &) { return std::nullopt; })
    {
    }

    ControlToken writtenToken()
    {
        ControlToken token = ControlToken::random();
        token.writeTo(folder.path());
        tokenText = folder.read("control.token").substr(0, 64);
        return token;
    }

    static ControlRequest request(const std::string &method, const std::string &target)
    {
        ControlRequest made;
        made.method = method;
        made.target = target;
        made.hosts = {"127.0.0.1:43200"};
        return made;
    }

    unsigned status(const std::string &method, const std::string &target) const
    {
        return api.answer(request(method, target)).status;
    }

    unsigned statusForHosts(std::vector<std::string> hosts) const
    {
        ControlRequest made = request("GET", "/api/health");
        made.hosts = std::move(hosts);
        return api.answer(made).status;
    }

    unsigned statusForOrigins(const std::string &method, std::vector<std::string> origins) const
    {
        ControlRequest made = request(method, method == "POST" ? "/api/shutdown" : "/api/health");
        made.origins = std::move(origins);
        made.tokens = {tokenText};
        return api.answer(made).status;
    }

    test::TemporaryFolder folder;
    std::string tokenText;
    ConfigStore store{folder.path()};
    NoNodeEngine engine{WallTime{}};
    test::FakeTraffic traffic;
    ControlApi api;
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
    EXPECT_EQ(boost::json::serialize(api.answer(request("GET", "/api/profiles")).body), "[]");
    EXPECT_EQ(boost::json::serialize(api.answer(request("GET", "/api/tunnels")).body), "[]");
    EXPECT_EQ(boost::json::serialize(api.answer(request("GET", "/api/publications")).body), "[]");
    EXPECT_EQ(boost::json::serialize(api.answer(request("GET", "/api/environment")).body),
        R"({"TailscaledAvailable":false,"TailscaledBin":"tailscaled"})");
}

TEST_F(ControlApiTest, UnknownPathsAre404)
{
    for (const std::string target : {"/", "/api", "/api/", "/api/health/", "/api//health", "/health", "/api/health/x",
             "/api/Health", "/API/health", "//api/health", "/api/tunnels/a/start", "/api/healt%68x"})
        EXPECT_EQ(status("GET", target), 404U) << target;
    EXPECT_EQ(status("POST", "/api/tunnels/a/start"), 404U) << "a write that does not exist yet";
}

TEST_F(ControlApiTest, WrongMethodsAre405AndNameTheRightOnes)
{
    for (const std::string method : {"POST", "PUT", "DELETE", "PATCH", "OPTIONS", "CONNECT", "get", "X"}) {
        const ControlAnswer answer = api.answer(request(method, "/api/config"));
        EXPECT_EQ(answer.status, 405U) << method;
        EXPECT_EQ(answer.allow, "GET, HEAD");
        EXPECT_TRUE(answer.body.at("error").is_string());
    }
    EXPECT_EQ(api.answer(request("GET", "/api/shutdown")).allow, "POST");
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
        {}, {""}, {"wrong"}, {tokenText + " "}, {tokenText, tokenText}, {"wrong", tokenText}};
    for (const std::vector<std::string> &tokens : wrong) {
        shutdown.tokens = tokens;
        const ControlAnswer answer = api.answer(shutdown);
        EXPECT_EQ(answer.status, 403U);
        EXPECT_EQ(answer.then, Then::GoOn) << "nothing happened";
        EXPECT_TRUE(answer.body.at("error").is_string());
    }
    shutdown.tokens = {tokenText};
    const ControlAnswer answer = api.answer(shutdown);
    EXPECT_EQ(answer.status, 200U);
    EXPECT_EQ(answer.then, Then::EndService);
    EXPECT_TRUE(answer.body.at("status").is_string());
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
    const ControlApi onPort80(store, engine, traffic, RequestGuard(ControlToken::random(), 80),
        [](const std::string &) { return std::nullopt; });
    ControlRequest made = request("GET", "/api/health");
    made.hosts = {"localhost"};
    EXPECT_EQ(onPort80.answer(made).status, 200U);
    made.hosts = {"localhost:43200"};
    EXPECT_EQ(onPort80.answer(made).status, 421U);
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
    ASSERT_TRUE(api.refuseEarly(stranger));
    EXPECT_EQ(api.refuseEarly(stranger)->then, Then::CloseConnection);
    EXPECT_FALSE(api.refuseEarly(request("POST", "/api/shutdown"))) << "the token is looked at once the body is there";
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
