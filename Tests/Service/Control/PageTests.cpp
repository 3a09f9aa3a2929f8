#include "Service/Page/StatusPage.h"
#include "Tests/Service/Support/ApiBed.h"
#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// What is asked of the API of a service with something of everything.
class PagesTest : public ::testing::Test {
protected:
    static std::string config()
    {
        ConfigDocument document;
        document.profiles.emplace_back("work", ProfileSettings{.displayName = "Work", .suffixes = {".tail1.ts.net"}});
        document.tunnels.emplace_back("db", tunnel("work", "127.0.0.1:43300"));
        document.tunnels.emplace_back("lost", tunnel("gone", "127.0.0.1:43301"));
        document.publications.emplace_back(
            "docs", PublicationSettings{.profile = "work", .target = "127.0.0.1:8080", .port = 443});
        return configFileText(document);
    }

    std::string pageAt(const std::string &target = "/")
    {
        const ControlAnswer answer = bed.ask("GET", target);
        return answer.document ? answer.document->text : "no page but status " + std::to_string(answer.status);
    }

    test::ApiBed bed{config()};

private:
    static TunnelSettings tunnel(const std::string &profile, const std::string &listen)
    {
        return {.profile = profile, .listen = listen, .target = "db.tail1.ts.net:5432"};
    }
};

TEST_F(PagesTest, ShowTheStateOfTheService)
{
    bed.traffic().tunnels["db"] = {.state = "listening", .activeConns = 7, .lastError = ""};
    bed.traffic().publications["docs"] = {.state = "error", .lastError = "The port is taken."};
    const std::string page = pageAt();
    EXPECT_THAT(page, AllOf(HasSubstr(">Work<"), HasSubstr("No network engine:")));
    EXPECT_THAT(
        page, AllOf(HasSubstr("Listening</span><span class=\"detail\">7 connections"), HasSubstr("port is taken")));
    EXPECT_THAT(page, HasSubstr("The profile &quot;gone&quot; is not configured."));
}

TEST_F(PagesTest, FollowEachChange)
{
    EXPECT_THAT(pageAt(), HasSubstr("Stopped"));
    bed.traffic().tunnels["db"].state = "starting";
    EXPECT_THAT(pageAt(), AllOf(HasSubstr("class=\"state busy\">Starting"), HasSubstr(">lost<")));
    EXPECT_EQ(bed.ask("DELETE", "/api/tunnels/lost").status, 200U);
    EXPECT_THAT(pageAt(), Not(HasSubstr(">lost<")));
}

TEST_F(PagesTest, ReloadByThemselvesOnlyWhenAsked)
{
    EXPECT_THAT(pageAt(), Not(HasSubstr("http-equiv")));
    EXPECT_THAT(pageAt("/?reload=true"), HasSubstr("http-equiv=\"refresh\""));
    EXPECT_THAT(pageAt("/?reload=false&else=1"), Not(HasSubstr("http-equiv")));
    EXPECT_EQ(bed.ask("GET", "/?reload=%3Cscript%3E").status, 400U);
}

TEST_F(PagesTest, TakeNoWritesAndNoOtherMethod)
{
    for (const std::string &path : {std::string("/"), std::string(statusStylePath)})
        for (const char *method : {"POST", "PUT", "DELETE", "PATCH", "OPTIONS", "CONNECT"}) {
            const ControlAnswer answer = bed.ask(method, path);
            EXPECT_EQ(answer.status, 405U) << method << path;
            EXPECT_EQ(answer.allow, "GET, HEAD");
        }
    for (const char *path : {"//", "/index.html", "/status.css/", "/api", "/api/"})
        EXPECT_EQ(bed.ask("GET", path).status, 404U) << path;
}

TEST_F(PagesTest, AreForThisComputerOnly)
{
    ControlRequest request = bed.request("GET", "/");
    request.tokens.clear();
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 200U) << "a browser has no token";
    request.origins = {"https://evil.example"};
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 400U);
    request.origins.clear();
    request.hosts = {"evil.example:43200"};
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 421U);
}

class PageWireTest : public ::testing::Test {
protected:
    test::RunningServer server{ControlLimits{}};
    test::RawClient client{server.port()};
};

TEST_F(PageWireTest, BrowserMayDrawItAndNothingElse)
{
    const auto page = client.exchange(client.request("GET", "/"));
    EXPECT_EQ(page.result_int(), 200U);
    EXPECT_EQ(page["Content-Type"], "text/html; charset=utf-8");
    EXPECT_EQ(page["Content-Security-Policy"],
        "default-src 'none'; style-src 'self'; img-src data:; base-uri 'none'; form-action 'none'; "
        "frame-ancestors 'none'");
    EXPECT_EQ(page["X-Content-Type-Options"], "nosniff");
    EXPECT_EQ(page["Referrer-Policy"], "no-referrer");
    EXPECT_EQ(page["Cache-Control"], "no-store");
    EXPECT_EQ(page["Cross-Origin-Opener-Policy"], "same-origin");
    EXPECT_EQ(page["Cross-Origin-Resource-Policy"], "same-origin");
    EXPECT_EQ(page["Access-Control-Allow-Origin"], "");
    EXPECT_THAT(page.body(), ::testing::StartsWith("<!doctype html>"));
}

TEST_F(PageWireTest, StyleSheetStandsBesideIt)
{
    const auto style = client.exchange(client.request("GET", statusStylePath));
    EXPECT_EQ(style["Content-Type"], "text/css; charset=utf-8");
    EXPECT_EQ(style.body(), statusStyle());
    EXPECT_THAT(client.exchange(client.request("GET", "/")).body(),
        HasSubstr("<link rel=\"stylesheet\" href=\"" + std::string(statusStylePath) + "\">"));
}

TEST_F(PageWireTest, HeadTellsTheLengthAlone)
{
    const auto page = client.exchange(client.request("GET", "/"));
    ASSERT_TRUE(client.send(client.request("HEAD", "/")));
    EXPECT_EQ(client.receiveHeader()["Content-Length"], std::to_string(page.body().size()));
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U) << "nothing was left over";
}

TEST_F(PageWireTest, AnswersOfTheApiStayJson)
{
    const auto health = client.exchange(client.request("GET", "/api/health"));
    EXPECT_EQ(health["Content-Type"], "application/json");
    EXPECT_EQ(health["Content-Security-Policy"], "default-src 'none'; frame-ancestors 'none'");
    EXPECT_EQ(health["Referrer-Policy"], "no-referrer");
}

} // namespace

} // namespace veranox
