#include "Service/Page/StatusPage.h"
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

NodeStatus running()
{
    return {.ok = true, .backendState = "Running", .raw = "", .error = "", .since = {}};
}

std::size_t count(std::string_view text, std::string_view piece)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(piece); at != std::string_view::npos; at = text.find(piece, at + piece.size()))
        ++found;
    return found;
}

class StatusPageTest : public ::testing::Test {
protected:
    void addProfile(const std::string &name, const ProfileSettings &settings, const NodeStatus &status)
    {
        document.profiles.emplace_back(name, settings);
        profiles.push_back(status);
    }
    void addTunnel(const std::string &name, const TunnelSettings &settings, const TunnelStatus &status)
    {
        document.tunnels.emplace_back(name, settings);
        tunnels.push_back(status);
    }
    void addPublication(const std::string &name, const PublicationSettings &settings, const PublicationStatus &status)
    {
        document.publications.emplace_back(name, settings);
        publications.push_back(status);
    }
    void addTunnel(const std::string &name, const std::string &state, const std::string &error = "")
    {
        addTunnel(name, TunnelSettings{}, {.state = state, .activeConns = 0, .lastError = error});
    }

    std::string page(bool reloads = false) const
    {
        return statusPage({.document = document,
            .profiles = profiles,
            .tunnels = tunnels,
            .publications = publications,
            .version = "1.2.3",
            .now = WallTime(std::chrono::seconds(1740816930)),
            .reloads = reloads});
    }

    ConfigDocument document;
    std::vector<NodeStatus> profiles;
    std::vector<TunnelStatus> tunnels;
    std::vector<PublicationStatus> publications;
};

TEST_F(StatusPageTest, EmptyConfigurationSaysWhatToDoNext)
{
    const std::string html = page();
    EXPECT_THAT(html, AllOf(HasSubstr("Nothing is set up yet"), HasSubstr("Open Veranox and add a profile")));
    EXPECT_THAT(
        html, AllOf(HasSubstr("No profiles yet."), HasSubstr("No tunnels yet."), HasSubstr("No publications yet.")));
    EXPECT_THAT(html, Not(HasSubstr("<table")));
    EXPECT_THAT(html, Not(HasSubstr("0 of 0")));
}

TEST_F(StatusPageTest, NamesVersionAndMoment)
{
    EXPECT_THAT(page(), HasSubstr("Router service 1.2.3"));
    EXPECT_THAT(page(), HasSubstr("<time datetime=\"2025-03-01T08:15:30.000Z\">2025-03-01 "));
}

TEST_F(StatusPageTest, ReloadsOnlyWhenAsked)
{
    EXPECT_THAT(page(), AllOf(Not(HasSubstr("http-equiv")), HasSubstr("href=\"/?reload=true\"")));
    EXPECT_THAT(page(true),
        AllOf(HasSubstr("<meta http-equiv=\"refresh\" content=\"10\">"), HasSubstr("<a href=\"/\">Stop</a>")));
}

TEST_F(StatusPageTest, ProfileWithWhatItOwns)
{
    addProfile("work", {.displayName = "Work", .suffixes = {".tail1.ts.net"}, .ipRoutes = {"10.0.0.0/8"}}, running());
    addProfile("bare", {}, {.ok = false, .backendState = "NeedsLogin", .raw = "", .error = "Sign in.", .since = {}});
    const std::string html = page();
    EXPECT_THAT(html,
        HasSubstr("<tr><th scope=\"row\"><span class=\"title\">Work</span><span class=\"name\">work</span></th>"
                  "<td><ul class=\"list\"><li><code>.tail1<wbr>.ts<wbr>.net</code></li>"
                  "<li><code>10<wbr>.0<wbr>.0<wbr>.0/8</code></li></ul></td>"
                  "<td><span class=\"state good\">Running</span></td></tr>"));
    EXPECT_THAT(html,
        HasSubstr("<span class=\"title\">bare</span></th><td><span class=\"none\">none: no request goes this way</span>"
                  "</td><td><span class=\"state attention\">Needs login</span>"
                  "<span class=\"detail\">Sign in.</span></td>"));
}

TEST_F(StatusPageTest, TunnelWithItsEnds)
{
    addProfile("work", {.displayName = "Work"}, running());
    addTunnel("db", {.displayName = "", .profile = "work", .mode = "native", .listen = "127.0.0.1:1", .target = "db:2"},
        {.state = "listening", .activeConns = 3, .lastError = ""});
    addTunnel("far",
        {.profile = "gone",
            .mode = "ssh",
            .listen = "",
            .target = "db:2",
            .ssh = TunnelSSHSettings{.bastion = "gate", .user = "me"}},
        {.state = "error", .activeConns = 0, .lastError = "Refused."});
    const std::string html = page();
    EXPECT_THAT(html,
        HasSubstr("<span class=\"title\">db</span></th><td><code>127<wbr>.0<wbr>.0<wbr>.1<wbr>:1</code></td>"
                  "<td><code>db<wbr>:2</code></td><td>Native</td><td>Work</td>"
                  "<td><span class=\"state good\">Listening</span><span class=\"detail\">3 connections</span></td>"));
    EXPECT_THAT(html,
        HasSubstr("<td><span class=\"none\">none</span></td><td><code>db<wbr>:2</code></td>"
                  "<td>SSH through <code>me<wbr>@gate</code></td><td>gone</td>"
                  "<td><span class=\"state failed\">Error</span><span class=\"detail\">Refused.</span></td>"));
}

TEST_F(StatusPageTest, PublicationWithAddressAndService)
{
    PublicationStatus status;
    status.state = "listening";
    status.address = "https://desk.ts.net";
    addPublication("docs", {.displayName = "Docs", .profile = "work", .target = "127.0.0.1:80"}, status);
    EXPECT_THAT(page(),
        HasSubstr("<span class=\"title\">Docs</span><span class=\"name\">docs</span></th>"
                  "<td><code>https<wbr>://desk<wbr>.ts<wbr>.net</code></td>"
                  "<td><code>127<wbr>.0<wbr>.0<wbr>.1<wbr>:80</code></td><td>work</td>"
                  "<td><span class=\"state good\">Published</span></td>"));
}

TEST_F(StatusPageTest, VerdictIsTheWorstThatThereIs)
{
    addTunnel("off", "stopped");
    EXPECT_THAT(page(), HasSubstr("<span class=\"state off\">Everything is switched off</span>"));
    addTunnel("good", "listening");
    EXPECT_THAT(page(), HasSubstr("<span class=\"state good\">Everything works</span>"));
    addTunnel("soon", "starting");
    EXPECT_THAT(page(), HasSubstr("<span class=\"state busy\">1 thing is still starting</span>"));
    addProfile("p", {}, {.ok = false, .backendState = "NeedsLogin", .raw = "", .error = "", .since = {}});
    EXPECT_THAT(page(), HasSubstr("<span class=\"state attention\">1 thing needs attention</span>"));
    addTunnel("bad", "error");
    EXPECT_THAT(page(), HasSubstr("<span class=\"state failed\">2 things need attention</span>"));
    EXPECT_THAT(page(), HasSubstr("<title>2 things need attention – Veranox</title>"));
}

TEST_F(StatusPageTest, CountsEachSubject)
{
    for (const char *state : {"listening", "starting", "starting", "stopped"})
        addTunnel(state, state);
    EXPECT_THAT(
        page(), HasSubstr("1<span class=\"of\"> of 4</span></span><span class=\"meaning\">listening, 2 starting"));
    addTunnel("bad", "error");
    EXPECT_THAT(page(),
        HasSubstr("1<span class=\"of\"> of 5</span></span><span class=\"meaning\">listening, 1 needs attention"));
}

TEST_F(StatusPageTest, NothingFromOutsideBecomesMarkup)
{
    const std::string evil = "\"'><script>alert(1)</script><img src=x onerror=a><!--\x1b";
    const std::string plain = page();
    addProfile(evil, {.displayName = evil, .suffixes = {evil}, .ipRoutes = {evil}},
        {.ok = false, .backendState = evil, .raw = evil, .error = evil, .since = {}});
    addTunnel(evil,
        {.displayName = evil,
            .profile = evil,
            .mode = "ssh",
            .listen = evil,
            .target = evil,
            .ssh = TunnelSSHSettings{.bastion = evil, .user = evil}},
        {.state = evil, .activeConns = 1, .lastError = evil});
    PublicationStatus status;
    status.state = "listening";
    status.address = status.lastError = evil;
    status.reachability.state = "unreachable";
    status.reachability.detail = evil;
    status.reachability.hint.emplace().policyURL = evil;
    addPublication(evil, {.displayName = evil, .profile = evil, .target = evil}, status);
    const std::string html = page();
    EXPECT_THAT(html, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("<img")), Not(HasSubstr("<!--"))));
    EXPECT_EQ(html.find('\x1b'), std::string::npos);
    EXPECT_EQ(count(html, "href="), count(plain, "href=") + 3) << "no link but those of the three tiles";
    EXPECT_GE(count(html, "&lt;script&gt;alert(1)&lt;/script&gt;"), 17U);
}

TEST_F(StatusPageTest, HasNoScriptNoInlineStyleAndNothingFromElsewhere)
{
    addTunnel("t", "listening");
    const std::string html = page();
    for (const char *forbidden : {"<script", "<style", "style=", "onload", "<form", "<iframe", "<object", "<base",
             "src=", "href=\"http", "//fonts"})
        EXPECT_THAT(html, Not(HasSubstr(forbidden))) << forbidden;
}

TEST_F(StatusPageTest, CanBeReadWithoutSeeing)
{
    addProfile("p", {}, running());
    addTunnel("t", "listening");
    addPublication("q", {}, {});
    const std::string html = page();
    EXPECT_THAT(html, HasSubstr("<html lang=\"en\">"));
    EXPECT_EQ(count(html, "<h1"), 1U);
    EXPECT_EQ(count(html, "<h2"), 4U);
    EXPECT_EQ(count(html, "<main>"), 1U);
    EXPECT_EQ(count(html, "<th scope=\"row\">"), 3U);
    EXPECT_EQ(count(html, "<th scope=\"col\">"), 3U + 6U + 5U);
    EXPECT_EQ(count(html, "<th"), 3U + 14U + 3U) << "every header cell has its scope; thead begins like one";
    for (const char *heading : {"profiles", "tunnels", "publications"})
        EXPECT_EQ(count(html, "aria-labelledby=\"" + std::string(heading) + "\""), 2U) << heading;
}

TEST_F(StatusPageTest, AThousandTunnels)
{
    constexpr int many = 1000;
    for (int i = 0; i < many; ++i)
        addTunnel("t" + std::to_string(i), i % 2 == 0 ? "listening" : "error", "Why.");
    const std::string html = page();
    EXPECT_EQ(count(html, "<tr><th scope=\"row\">"), 1000U);
    EXPECT_THAT(html, HasSubstr("500 things need attention"));
    EXPECT_THAT(html, ::testing::EndsWith("</html>\n"));
    EXPECT_LT(html.size(), 512U * 1024);
}

} // namespace

} // namespace veranox
