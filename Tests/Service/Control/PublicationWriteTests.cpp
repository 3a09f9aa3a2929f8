#include "Service/Json/JsonText.h"
#include "Tests/Service/Support/RefusalTable.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace veranox {

namespace {

namespace json = boost::json;
using ::testing::ElementsAre;

constexpr std::string_view file = R"({"Version": 1, "Router": {},
    "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false},
    "Profiles": {"work": {"Suffixes": [".work.ts.net"]}, "home": {"Suffixes": [".home.ts.net"]},
        "daemon": {"Backend": "tailscaled"}},
    "Tunnels": {"db": {"Profile": "work", "Target": "db:5432", "Listen": "127.0.0.1:43300"}},
    "Publications": {
        "web": {"Profile": "work", "Target": "127.0.0.1:8080", "Port": 443, "TLS": true, "Note": "mine"},
        "docs": {"Profile": "work", "Target": "localhost:8081", "Port": 8081, "Disabled": true},
        "open": {"Profile": "work", "Target": "localhost:8082", "Port": 8082, "Reach": "funnel"}}})";

constexpr std::string_view good =
    R"({"Name": "new", "Publication": {"DisplayName": "New", "Profile": "work", "Target": "127.0.0.1:9000",
        "Reach": "tailnet", "Port": 9000, "TLS": false, "Disabled": false}})";

/// The good save with members laid over it: those of the request, and those of its publication; null takes one away.
std::string save(const std::string &members, const std::string &publicationMembers = "{}")
{
    json::object body = json::parse(good).as_object();
    const auto layOver = [](json::object &base, const std::string &text) {
        for (const auto &[key, value] : json::parse(text).as_object())
            value.is_null() ? void(base.erase(key)) : void(base[key] = value);
    };
    layOver(body["Publication"].as_object(), publicationMembers);
    layOver(body, members);
    return json::serialize(body);
}

std::string savedPublication(const std::string &members)
{
    return save("{}", members);
}

class PublicationWrites : public ::testing::Test {
protected:
    std::vector<std::string> names(const ControlAnswer &answer)
    {
        EXPECT_EQ(answer.status, 200U) << test::errorOf(answer);
        std::vector<std::string> result;
        if (answer.body.is_array())
            for (const json::value &publication : answer.body.get_array())
                result.emplace_back(publication.at("Name").as_string());
        return result;
    }
    ControlAnswer post(const std::string &path, const std::string &body = "")
    {
        return bed.ask("POST", "/api/publications" + path, body);
    }
    json::value onDisk(const std::string &name) const
    {
        const json::object all = parseJson(bed.folder().read("config.json")).at("Publications").as_object();
        return all.contains(name) ? all.at(name) : json::value(nullptr);
    }

    test::ApiBed bed{file};
};

TEST_F(PublicationWrites, CreateAnswersTheWholeList)
{
    const ControlAnswer answer = post("", std::string(good));
    EXPECT_THAT(names(answer), ElementsAre("web", "docs", "open", "new"));
    EXPECT_EQ(answer.body, bed.ask("GET", "/api/publications").body);
    EXPECT_EQ(onDisk("new").at("Port"), 9000);
    EXPECT_EQ(bed.traffic().applied.back().publications.size(), 4U);
}

TEST_F(PublicationWrites, EditAndRename)
{
    EXPECT_THAT(names(post("", save(R"({"Name": "web", "OriginalName": "web"})", R"({"Port": 443})"))),
        ElementsAre("web", "docs", "open"));
    EXPECT_EQ(onDisk("web").at("Target"), "127.0.0.1:9000");
    EXPECT_EQ(onDisk("web").at("Note"), "mine");
    EXPECT_THAT(names(post("", save(R"({"Name": "site", "OriginalName": "web"})", R"({"Port": 443})"))),
        ElementsAre("site", "docs", "open"));
    EXPECT_EQ(onDisk("web"), nullptr);
    EXPECT_EQ(onDisk("site").at("Note"), "mine");
}

TEST_F(PublicationWrites, SamePortOnAnotherProfileAndFunnelAreFine)
{
    EXPECT_EQ(post("", savedPublication(R"({"Profile": "home", "Port": 443})")).status, 200U);
    EXPECT_EQ(post("", save(R"({"Name": "far"})", R"({"Reach": "funnel"})")).status, 200U);
    EXPECT_EQ(post("", save(R"({"Name": "six"})", R"({"Target": "[::1]:9001", "Port": 9001})")).status, 200U);
}

TEST_F(PublicationWrites, Delete)
{
    EXPECT_THAT(names(bed.ask("DELETE", "/api/publications/web")), ElementsAre("docs", "open"));
    EXPECT_EQ(onDisk("web"), nullptr);
}

TEST_F(PublicationWrites, StartAndStopSwitchTheDocument)
{
    EXPECT_EQ(post("/docs/start").body.at(1).at("Disabled"), false);
    EXPECT_EQ(onDisk("docs").at("Disabled"), false);
    EXPECT_EQ(post("/docs/stop").body.at(1).at("Disabled"), true);
    EXPECT_EQ(onDisk("docs").at("Disabled"), true);
    EXPECT_EQ(bed.traffic().applied.size(), 3U);
}

TEST_F(PublicationWrites, StartThatFailsIsSavedAndSaysWhy)
{
    bed.traffic().publications["docs"] = {.state = "error", .lastError = "address in use", .reachability = {}};
    const ControlAnswer answer = post("/docs/start");
    EXPECT_EQ(answer.status, 503U);
    EXPECT_EQ(test::errorOf(answer),
        "The publication \"docs\" was switched on and saved, but it could not be started: address in use");
    EXPECT_EQ(test::publicationRow(test::errorOf(answer)), 1);
    EXPECT_EQ(onDisk("docs").at("Disabled"), false);
    EXPECT_EQ(bed.ask("GET", "/api/publications").body.at(1).at("State"), "error");
    EXPECT_EQ(post("/docs/start").status, 503U);
    EXPECT_THAT(bed.traffic().restartedPublications, ElementsAre("docs")) << "the second time it is tried again";
}

TEST_F(PublicationWrites, StartOfWhatFaresWellKeepsItsConnections)
{
    bed.traffic().publications["web"] = {.state = "listening", .reachability = {}};
    EXPECT_EQ(post("/web/start").status, 200U);
    EXPECT_TRUE(bed.traffic().restartedPublications.empty());
    EXPECT_EQ(bed.traffic().applied.size(), 1U);
}

TEST_F(PublicationWrites, Restart)
{
    EXPECT_THAT(names(post("/web/restart")), ElementsAre("web", "docs", "open"));
    EXPECT_THAT(bed.traffic().restartedPublications, ElementsAre("web"));
}

TEST_F(PublicationWrites, EachNeedsTheToken)
{
    for (const auto &[method, path] : {std::pair("POST", ""), {"DELETE", "/web"}, {"POST", "/docs/start"},
             {"POST", "/web/stop"}, {"POST", "/web/restart"}}) {
        ControlRequest request = bed.request(method, std::string("/api/publications") + path, std::string(good));
        request.tokens.clear();
        EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 403U) << path;
    }
    EXPECT_EQ(bed.traffic().applied.size(), 1U);
    EXPECT_TRUE(bed.traffic().restartedPublications.empty());
}

/// A refused save of a publication: its body, and which sentence the application makes of it.
struct RefusedSave {
    std::string body;
    std::string sentence;
    int row;
    unsigned status = 400;
};

class RefusedPublication : public PublicationWrites, public ::testing::WithParamInterface<RefusedSave> { };

TEST_P(RefusedPublication, ChangesNothing)
{
    test::expectRefused(bed, {"POST", "/api/publications", GetParam().body, GetParam().status, GetParam().sentence});
    EXPECT_EQ(test::publicationRow(GetParam().sentence), GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Shape, RefusedPublication,
    ::testing::Values(
        RefusedSave{"{", "decoding JSON body: line 1, column 2: the text ends before the JSON value does.", 13},
        RefusedSave{"nonsense", "decoding JSON body: line 1, column 1: syntax error.", 13},
        RefusedSave{R"({"Name": "a", "Publication": {"TLS": true, "TLS": false}})",
            "decoding JSON body: the key \"TLS\": stands twice in one object, so one of the two would be lost.", 13},
        RefusedSave{save(R"({"Publication": null})"),
            R"(decoding JSON body: the top level: the key "Publication" is missing.)", 13},
        RefusedSave{save(R"({"Future": 1})"), R"(decoding JSON body: the top level: unknown field "Future".)", 13},
        RefusedSave{
            savedPublication(R"({"TLS": null})"), R"(decoding JSON body: Publication: the key "TLS" is missing.)", 13},
        RefusedSave{savedPublication(R"({"Port": "443"})"),
            "decoding JSON body: Publication.Port: must be a whole number.", 13},
        RefusedSave{
            savedPublication(R"({"Future": 1})"), R"(decoding JSON body: Publication: unknown field "Future".)", 13}));

INSTANTIATE_TEST_SUITE_P(Names, RefusedPublication,
    ::testing::Values(RefusedSave{save(R"({"Name": ""})"),
                          "The publication name \"\" must be lowercase letters, numbers, hyphen or underscore, start "
                          "with a letter or "
                          "number, and have at most 63 characters.",
                          14},
        RefusedSave{save(R"({"Name": "web"})"), "A publication named \"web\" already exists.", 2, 409},
        RefusedSave{
            save(R"({"Name": "web", "OriginalName": "docs"})"), "A publication named \"web\" already exists.", 2, 409},
        RefusedSave{save(R"({"OriginalName": "gone"})"), "The publication \"gone\" does not exist.", 5, 404},
        RefusedSave{
            savedPublication(R"({"DisplayName": "a\u007f"})"), "The display name holds a control character.", 14}));

INSTANTIATE_TEST_SUITE_P(Values, RefusedPublication,
    ::testing::Values(RefusedSave{savedPublication(R"({"Profile": "x"})"), "The profile \"x\" is not configured.", 4},
        RefusedSave{savedPublication(R"({"Profile": "daemon"})"),
            "Publications require the tsnet backend, but profile \"daemon\" runs on tailscaled.", 3},
        RefusedSave{
            savedPublication(R"({"Target": "8080"})"), "The target must be host:port, for example db.example:5432.", 9},
        RefusedSave{
            savedPublication(R"({"Target": ":8080"})"), "The target must be host:port, but has an empty host.", 9},
        RefusedSave{savedPublication(R"({"Target": "localhost:http"})"),
            "The target must be host:port, and the port must be numeric.", 9},
        RefusedSave{savedPublication(R"({"Target": "localhost:0"})"),
            "The target must be host:port with a port from 1 to 65535.", 9},
        RefusedSave{savedPublication(R"({"Target": "192.168.1.5:80"})"),
            "The target must be a loopback address such as 127.0.0.1:8080.", 8},
        RefusedSave{savedPublication(R"({"Target": "[::ffff:10.0.0.1]:80"})"),
            "The target must be a loopback address such as 127.0.0.1:8080.", 8},
        RefusedSave{savedPublication(R"({"Target": "127.0.0.1:43300"})"),
            "The target is one of Veranox's own listeners: port 43300 belongs to tunnel \"db\".", 7},
        RefusedSave{savedPublication(R"({"Target": "[::1]:43200"})"),
            "The target is one of Veranox's own listeners: port 43200 belongs to the control API.", 7},
        RefusedSave{savedPublication(R"({"Target": "localhost:43180"})"),
            "The target is one of Veranox's own listeners: port 43180 belongs to the PAC server.", 7},
        RefusedSave{savedPublication(R"({"Target": "127.0.0.1:43113"})"),
            "The target is one of Veranox's own listeners: port 43113 belongs to the SOCKS5 proxy of profile \"home\".",
            7},
        RefusedSave{savedPublication(R"({"Port": 0})"), "The port must be in 1-65535.", 10},
        RefusedSave{savedPublication(R"({"Port": 65536})"), "The port must be in 1-65535.", 10},
        RefusedSave{savedPublication(R"({"Port": 18446744073709551615})"), "The port must be in 1-65535.", 10},
        RefusedSave{savedPublication(R"({"Port": 443})"),
            "The publication endpoint work:443 is taken by publication \"web\".", 11, 409},
        RefusedSave{save(R"({"OriginalName": "docs", "Name": "docs"})", R"({"Port": 443})"),
            "The publication endpoint work:443 is taken by publication \"web\".", 11, 409},
        RefusedSave{savedPublication(R"({"Reach": "world"})"),
            R"(The reach "world" is not known; it must be "tailnet" or "funnel".)", 12}));

INSTANTIATE_TEST_SUITE_P(Order, RefusedPublication,
    ::testing::Values(
        RefusedSave{save(R"({"Name": "web"})", R"({"Profile": "x", "Target": "", "Port": 0, "Reach": ""})"),
            "A publication named \"web\" already exists.", 2, 409},
        RefusedSave{savedPublication(R"({"Profile": "x", "Target": "", "Port": 0, "Reach": ""})"),
            "The profile \"x\" is not configured.", 4},
        RefusedSave{savedPublication(R"({"Target": "", "Port": 0, "Reach": ""})"),
            "The target must be host:port, for example db.example:5432.", 9},
        RefusedSave{savedPublication(R"({"Port": 0, "Reach": ""})"), "The port must be in 1-65535.", 10},
        RefusedSave{savedPublication(R"({"Port": 443, "Reach": ""})"),
            "The publication endpoint work:443 is taken by publication \"web\".", 11, 409}));

TEST_F(PublicationWrites, NamesThatThereAreNot)
{
    const std::string sentence = "The publication \"gone\" is not configured.";
    EXPECT_EQ(test::publicationRow(sentence), 6);
    test::expectRefused(bed, {"DELETE", "/api/publications/gone", "", 404, sentence});
    for (const std::string path : {"/start", "/stop", "/restart"})
        test::expectRefused(bed, {"POST", "/api/publications/gone" + path, "", 404, sentence});
}

TEST_F(PublicationWrites, RestartOfOneThatIsSwitchedOff)
{
    test::expectRefused(bed,
        {"POST", "/api/publications/docs/restart", "", 409,
            "The publication \"docs\" is switched off; switch it on instead."});
}

} // namespace

} // namespace veranox
