#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Tests/Service/Support/ApiBed.h"
#include "Tests/Service/Support/Document.h"
#include "Tests/Service/Support/FileSizeLimit.h"
#include <algorithm>
#include <boost/json/serialize.hpp>
#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <set>

namespace veranox {

namespace {

namespace json = boost::json;
using test::ApiBed;
using test::codes;
using test::Document;
using ::testing::StartsWith;

constexpr std::string_view config = R"({"Version": 1, "Router": {}, "Paths": {"AppSupportDir": "", "ConfigDir": ""},
    "Tailscale": {"TailscaleBin": "", "TailscaledBin": ""}, "Security": {"RequireLoopbackListeners": true,
        "AllowCrossProfileFallback": false, "AllowIPLiterals": false, "AllowUnknownTSNet": false},
    "Profiles": {"x": {}},
    "Tunnels": {"x": {"Profile": "x", "Mode": "ssh", "Target": "a:1", "Listen": "127.0.0.1:5",
        "SSH": {"Bastion": "b", "User": "u", "Auth": "password", "IdentityFile": ""}}},
    "Publications": {"x": {"Profile": "x", "Target": "127.0.0.1:6", "Reach": "tailnet", "Port": 7}}})";

Document document()
{
    return Document("docs/control-api.md");
}

/// One row of the table of paths.
struct Route {
    std::string method;
    std::string path; // with "x" for a name
    std::string query;
    std::string body;
    std::string answer;
};

/// What a row's first cell names: "`POST /api/a/<name>/start`, `stop`" are two. A part replaces the last one.
void addRoutes(std::vector<Route> &routes, const std::vector<std::string> &row)
{
    std::string first;
    for (const std::string &code : codes(row.at(0))) {
        std::string request = code.contains(' ') ? code : first.substr(0, first.rfind('/') + 1) + code;
        first = first.empty() ? code : first;
        if (const std::size_t name = request.find("<name>"); name != std::string::npos)
            request.replace(name, 6, "x");
        const std::size_t blank = request.find(' ');
        const std::size_t query = std::min(request.find('?'), request.size());
        routes.push_back({.method = request.substr(0, blank),
            .path = request.substr(blank + 1, query - blank - 1),
            .query = request.substr(query),
            .body = codes(row.at(1)).empty() ? "" : codes(row.at(1)).at(0),
            .answer = codes(row.at(2)).empty() ? "" : codes(row.at(2)).at(0)});
    }
}

std::vector<Route> routes()
{
    std::vector<Route> all;
    for (const std::vector<std::string> &row : document().table("| Method and path |"))
        addRoutes(all, row);
    return all;
}

/// The keys of `{"a", "b"?}`, each with whether it must be there.
std::map<std::string, bool> keysOf(const std::string &shape)
{
    std::map<std::string, bool> keys;
    for (std::size_t begin = shape.find('"'); begin != std::string::npos;) {
        const std::size_t end = shape.find('"', begin + 1);
        keys[shape.substr(begin + 1, end - begin - 1)] = shape.substr(end + 1, 1) != "?";
        begin = shape.find('"', end + 1);
    }
    return keys;
}

/// A good body for each path that takes one.
json::object goodBody(ApiBed &bed, const std::string &path)
{
    if (path == "/api/config")
        return bed.ask("GET", path).body.as_object();
    if (path == "/api/tunnels")
        return {{"Name", "x"}, {"OriginalName", "x"},
            {"Tunnel",
                {{"DisplayName", ""}, {"Profile", "x"}, {"Mode", "native"}, {"Listen", ""}, {"Target", "a:1"},
                    {"Disabled", false}}}};
    if (path == "/api/publications")
        return {{"Name", "x"}, {"OriginalName", "x"},
            {"Publication",
                {{"DisplayName", ""}, {"Profile", "x"}, {"Target", "127.0.0.1:6"}, {"Reach", "tailnet"}, {"Port", 7},
                    {"TLS", false}, {"Disabled", false}}}};
    if (path == "/api/tunnels/x/secret")
        return {{"Password", "p"}};
    return {{"message", "m"}, {"kind", "k"}, {"contact", "c"}, {"appVersion", "1"}, {"os", "o"}};
}

TEST(ControlApiDocument, NamesEachPathWithEachOfItsMethods)
{
    ApiBed bed(config);
    std::map<std::string, std::set<std::string>> told;
    for (const Route &route : routes())
        told[route.path].insert(route.method == "GET" ? "GET, HEAD" : route.method);
    for (const auto &[path, methods] : told) {
        std::string allow;
        for (const std::string_view method : {"GET, HEAD", "POST", "DELETE"})
            if (methods.contains(std::string(method)))
                allow += (allow.empty() ? "" : ", ") + std::string(method);
        EXPECT_EQ(bed.ask("PROBE", path).allow, allow) << path;
    }
}

/// There is no asking the service for the paths that nobody names, so its own table is read.
TEST(ControlApiDocument, LeavesNoPathOut)
{
    std::set<std::string> named;
    for (const Route &route : routes())
        named.insert(route.method + " " + route.path);
    std::set<std::string> served;
    const Document program("Service/Control/ControlApi.cpp");
    std::string table = program.between("ControlApi::routes[] = {", "};");
    for (std::size_t row = table.find("{\""); row != std::string::npos; row = table.find("{\"", row + 1)) {
        const std::size_t method = table.find('"', row) + 1;
        const std::size_t path = table.find("\"/api", row);
        if (path == std::string::npos || path > table.find('\n', row))
            continue; // of the status page
        std::string text = table.substr(path + 1, table.find('"', path + 1) - path - 1);
        if (const std::size_t name = text.find('*'); name != std::string::npos)
            text[name] = 'x';
        served.insert(table.substr(method, table.find('"', method) - method) + " " + text);
    }
    EXPECT_GT(served.size(), 20U);
    EXPECT_EQ(named, served);
}

TEST(ControlApiDocument, RequestsAreTakenAsItWritesThem)
{
    for (const Route &route : routes()) {
        ApiBed bed(config);
        const bool hasBody = !route.body.empty() || route.path == "/api/config";
        const std::string body = !hasBody ? "" : json::serialize(goodBody(bed, route.path));
        const std::string query =
            route.path.contains("/reports/") ? "?target=a&netcheck=true&ping_count=3" : route.query;
        const ControlAnswer answer = bed.ask(route.method, route.path + query, body);
        EXPECT_EQ(answer.status, 200U) << route.method << " " << route.path << ": " << test::errorOf(answer);
        if (!route.answer.empty()) {
            std::set<std::string> keys;
            for (const auto &member : answer.body.as_object())
                keys.insert(member.key());
            std::set<std::string> told;
            for (const auto &[key, isNeeded] : keysOf(route.answer))
                told.insert(key);
            EXPECT_EQ(keys, told) << route.path;
        }
    }
}

TEST(ControlApiDocument, BodiesHaveTheKeysThatItTells)
{
    int bodies = 0;
    for (const Route &route : routes()) {
        if (keysOf(route.body).empty())
            continue;
        ++bodies;
        ApiBed bed(config);
        const json::object good = goodBody(bed, route.path);
        const auto status = [&](const json::object &body) {
            return bed.ask(route.method, route.path, json::serialize(body)).status;
        };
        EXPECT_EQ(good.size(), keysOf(route.body).size()) << route.path;
        for (const auto &[key, isNeeded] : keysOf(route.body)) {
            json::object without = good;
            EXPECT_EQ(without.erase(key), 1U) << route.path << key;
            if (key == "OriginalName")
                without["Name"] = "y"; // a new one
            if (without.contains("Tunnel"))
                without["Tunnel"].as_object()["Listen"] = "";
            if (key == "OriginalName" && without.contains("Publication"))
                without["Publication"].as_object()["Port"] = 8;
            EXPECT_EQ(status(without), isNeeded ? 400U : 200U) << route.path << " " << key;
        }
        json::object more = good;
        more["Other"] = 1;
        EXPECT_EQ(status(more), 400U) << route.path;
    }
    EXPECT_EQ(bodies, 4);
}

TEST(ControlApiDocument, NamesEveryStatusThatThereIs)
{
    ApiBed bed(config);
    std::set<unsigned> seen{413, 431, 501}; // of the transport, tried where the order is
    const auto ask = [&](const ControlRequest &request) { seen.insert(test::awaitAnswer(bed.api(), request).status); };
    ask(bed.request("POST", "/api/tunnels", "{"));
    ask(bed.request("GET", "/api/none"));
    ask(bed.request("GET", "/api/shutdown"));
    ask(bed.request("POST", "/api/tunnels",
        R"({"Name": "x", "Tunnel": )" + json::serialize(goodBody(bed, "/api/tunnels").at("Tunnel")) + "}"));
    ControlRequest stranger = bed.request("GET", "/api/health");
    stranger.hosts = {"evil.example"};
    ask(stranger);
    ControlRequest guess = bed.request("POST", "/api/shutdown");
    guess.tokens = {"guess"};
    ask(guess);
    const std::string saved = json::serialize(goodBody(bed, "/api/config"));
    const test::FileSizeLimit full(10);
    ask(bed.request("POST", "/api/config", saved));
    ask(bed.request("POST", "/api/feedback", json::serialize(goodBody(bed, "/api/feedback"))));
    std::set<unsigned> named;
    for (const std::vector<std::string> &row : document().table("| Status |"))
        for (std::size_t at = 0; at < row.at(0).size(); at += 5)
            named.insert(static_cast<unsigned>(std::stoul(row.at(0).substr(at))));
    EXPECT_EQ(seen, named);
}

TEST(ControlApiDocument, TellsHowDeepABodyMayNest)
{
    const std::size_t most = document().number("nests deeper than ", " levels");
    const auto nested = [](std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']'); };
    EXPECT_NO_THROW(parseJson(nested(most)));
    EXPECT_THROW(parseJson(nested(most + 1)), JsonProblem);
}

TEST(ControlApiDocument, TellsWhatOfABodyIsFoundFirst)
{
    ApiBed bed(config);
    const json::object good = goodBody(bed, "/api/config");
    using Change = std::function<void(json::object &)>;
    const std::pair<std::string, Change> defects[] = {
        {"The profile name", [](json::object &body) { body["Profiles"].as_object()["A b"] = json::object(); }},
        {"decoding JSON body: Router: ", [](json::object &body) { body["Router"] = 7; }},
        {"Profiles.x.Port must be", [](json::object &body) { body["Profiles"].at("x").as_object()["Port"] = 70000; }},
        {"decoding JSON body: the top level: unknown field", [](json::object &body) { body["Other"] = 1; }},
        {"Profile \"x\": Hostname", [](json::object &body) { body["Profiles"].at("x").as_object()["Hostname"] = "-"; }},
    };
    for (const auto *first = std::begin(defects); first != std::end(defects); ++first)
        for (const auto *second = first; second != std::end(defects); ++second) {
            json::object body = good;
            second->second(body);
            first->second(body);
            EXPECT_THAT(test::errorOf(bed.ask("POST", "/api/config", json::serialize(body))), StartsWith(first->first));
        }
    const std::string twice = R"({"Profiles": {"A b": {}}, "Profiles": {}})";
    EXPECT_THAT(test::errorOf(bed.ask("POST", "/api/config", twice)), ::testing::HasSubstr("stands twice"));
}

} // namespace

} // namespace veranox
