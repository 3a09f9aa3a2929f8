#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Service/Nodes/Lab/LabDemo.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Tests/Service/Support/Document.h"
#include <algorithm>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <set>

namespace veranox {

namespace {

namespace json = boost::json;
using test::codes;
using test::Document;
using ::testing::IsSupersetOf;

using Keys = std::set<std::string>;

Document document()
{
    return Document("docs/lab-network.md");
}

/// The first code of each row's first cell, or every code of it.
Keys keysOfTable(std::string_view heading)
{
    Keys keys;
    for (const std::vector<std::string> &row : document().table(heading))
        for (const std::string &key : codes(row.at(0)))
            keys.insert(key);
    return keys;
}

Keys keysOf(const json::value &object)
{
    Keys keys;
    for (const auto &member : object.as_object())
        keys.insert(member.key());
    return keys;
}

/// A lab with every key that there is. Two of a kind where one excludes another.
constexpr std::string_view everything = R"({
    "version": 1,
    "tailnets": {"net": {"suffix": ".t", "hosts": {"a": "site", "b": "echo", "c": "blackhole", "d": "127.0.0.1",
        "e": "127.0.0.1:8080", "f": "[::1]:80"}}},
    "profiles": {"p": {"tailnet": "net", "settles_after_s": 1.5, "needs_login": true, "approved_after_s": 2,
        "fails": "broken", "fails_after_s": 86400, "node_address": "127.80.0.1", "config": {},
        "policy": {"admits": "nobody", "detail": "why", "hint": {"host_alias": "h", "node_ip": "100.64.0.1",
            "source": "s", "policy_url": "https://p", "hosts_entry": "e", "grant": "g"}}}},
    "tunnels": {"t": {"starts_after_s": 1, "active_connections": 2, "acted": true, "fails": "no", "fails_after_s": 3,
        "config": {"Profile": "p", "Target": "a.t:80"}}},
    "publications": {"q": {"starts_after_s": 1, "active_connections": 2, "acted": true, "fails": "no",
        "fails_after_s": 3, "config": {"Profile": "p", "Target": "127.0.0.1:1", "Port": 1}}}})";

bool isTaken(const json::value &lab)
{
    try {
        parseLab(json::serialize(lab));
        return true;
    } catch (const JsonProblem &) {
        return false;
    }
}

TEST(LabDocument, ItsTablesHaveTheKeysThatThereAre)
{
    const json::value lab = parseJson(everything);
    EXPECT_TRUE(isTaken(lab));
    EXPECT_EQ(keysOfTable("| Top level |"), keysOf(lab));
    EXPECT_EQ(keysOfTable("| Key | Meaning | When left out |"), keysOf(lab.at("profiles").at("p")));
}

TEST(LabDocument, ItsTextNamesTheOtherKeys)
{
    const json::value lab = parseJson(everything);
    const std::vector<std::string> policy = codes(document().between("A **policy** has ", "\n\nA **tunnel**"));
    const json::value &written = lab.at("profiles").at("p").at("policy");
    EXPECT_THAT(policy, IsSupersetOf(keysOf(written)));
    EXPECT_THAT(policy, IsSupersetOf(keysOf(written.at("hint"))));
    const std::vector<std::string> forwarding =
        codes(document().between("A **tunnel** or **publication** waits ", "\n\n## ") + " `starts_after_s`");
    EXPECT_THAT(forwarding, IsSupersetOf(keysOf(lab.at("tunnels").at("t"))));
    EXPECT_EQ(keysOf(lab.at("tunnels").at("t")), keysOf(lab.at("publications").at("q")));
    const std::vector<std::string> tailnet = codes(document().between("A **tailnet** has ", "\n\nA **profile**"));
    EXPECT_THAT(tailnet, IsSupersetOf(keysOf(lab.at("tailnets").at("net"))));
    for (const auto &host : lab.at("tailnets").at("net").at("hosts").as_object())
        EXPECT_THAT(tailnet, ::testing::Contains(std::string(host.value().as_string())));
}

TEST(LabDocument, KeysThatAreNotNamedAreRefused)
{
    const auto isTakenWith = [](std::string_view pointer) {
        json::value lab = parseJson(everything);
        lab.at_pointer(pointer).as_object()["other"] = 1;
        return isTaken(lab);
    };
    for (const std::string_view pointer : {"", "/tailnets/net", "/profiles/p", "/profiles/p/policy",
             "/profiles/p/policy/hint", "/tunnels/t", "/publications/q"})
        EXPECT_FALSE(isTakenWith(pointer)) << pointer;
}

TEST(LabDocument, WhatMayBeLeftOutIsWhatItSays)
{
    for (const std::vector<std::string> &row : document().table("| Key | Meaning | When left out |")) {
        json::value lab = parseJson(everything);
        json::object &profile = lab.at("profiles").at("p").as_object();
        const std::string key = codes(row.at(0)).at(0);
        profile.erase(key);
        if (key == "fails")
            profile.erase("fails_after_s"); // which needs the other
        EXPECT_EQ(isTaken(lab), row.at(2) != "must be there") << key;
    }
}

TEST(LabDocument, TimesHaveTheRangeThatItTells)
{
    const std::size_t most = document().number("Times are seconds from 0 to ", ", fractions");
    json::value lab = parseJson(everything);
    json::value &time = lab.at("profiles").at("p").at("settles_after_s");
    for (const double good : {0.0, 0.25, static_cast<double>(most)}) {
        time = good;
        EXPECT_TRUE(isTaken(lab)) << good;
    }
    for (const double bad : {-0.1, static_cast<double>(most) + 0.1}) {
        time = bad;
        EXPECT_FALSE(isTaken(lab)) << bad;
    }
}

TEST(LabDocument, ItsExampleIsALab)
{
    const LabNetwork network = parseLab(document().between("```json\n", "```"));
    EXPECT_EQ(network.tailnets.size(), 1U);
    EXPECT_EQ(network.profiles.size(), 1U);
    EXPECT_EQ(network.tunnels.size(), 1U);
}

TEST(LabDocument, TheHostThatItTriesOutIsInTheDemo)
{
    const std::string target = document().between("through a tunnel to `", "`");
    const LabNetwork demo = parseLab(labDemoText());
    EXPECT_TRUE(std::ranges::any_of(demo.tailnets, [&](const auto &tailnet) {
        return std::ranges::any_of(tailnet.second.hosts, [&](const auto &host) {
            return host.first + tailnet.second.suffix + ":80" == target && host.second.kind == LabHost::Kind::site;
        });
    })) << target;
}

} // namespace

} // namespace veranox
