#include "Tests/Service/Control/SaveConfig.h"
#include "Tests/Service/Support/RefusalTable.h"
#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace test::save_config;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// One refusal: how the document on its way differs from a good one, and what is said.
struct Refused {
    std::string change; // a JSON object that is laid over the document, null taking a member away
    std::string sentence;
    unsigned status = 400;
};

json::value laidOver(json::value base, const json::value &change)
{
    if (!change.is_object() || !base.is_object())
        return change;
    for (const auto &[key, value] : change.get_object()) {
        if (value.is_null())
            base.get_object().erase(key);
        else
            base.get_object()[key] = laidOver(base.get_object()[key], value);
    }
    return base;
}

class RefusedConfig : public SaveConfig, public ::testing::WithParamInterface<Refused> { };

TEST_P(RefusedConfig, ChangesNothing)
{
    const std::string before = bed.filesOnDisk();
    const json::value body = laidOver(document(), json::parse(GetParam().change));
    const ControlAnswer answer = save(body);
    EXPECT_EQ(test::errorOf(answer), GetParam().sentence);
    EXPECT_EQ(answer.status, GetParam().status);
    EXPECT_EQ(bed.filesOnDisk(), before);
    EXPECT_EQ(bed.store().generation(), 1U);
}

std::string work(const std::string &members)
{
    return R"({"Profiles": {"work": )" + members + "}}";
}
std::string router(const std::string &members)
{
    return R"({"Router": )" + members + "}";
}

INSTANTIATE_TEST_SUITE_P(Shape, RefusedConfig,
    ::testing::Values(Refused{"7", "decoding JSON body: the top level: must be an object in braces."},
        Refused{R"({"Version": null})", R"(decoding JSON body: the top level: the key "Version" is missing.)"},
        Refused{R"({"Version": 2})", "decoding JSON body: Version: is 2, which a newer Veranox wrote."},
        Refused{R"({"Router": 7})", "decoding JSON body: Router: must be an object in braces."},
        Refused{R"({"Tailscale": {"TailscaleBin": null}})",
            R"(decoding JSON body: Tailscale: the key "TailscaleBin" is missing.)"},
        Refused{R"({"Paths": null})", R"(decoding JSON body: the top level: the key "Paths" is missing.)"},
        Refused{R"({"Security": {"AllowIPLiterals": "no"}})",
            "decoding JSON body: Security.AllowIPLiterals: must be true or false."},
        Refused{R"({"Profiles": null})", R"(decoding JSON body: the top level: the key "Profiles" is missing.)"},
        Refused{R"({"Profiles": []})", "decoding JSON body: Profiles: must be an object in braces."},
        Refused{work("7"), "decoding JSON body: Profiles.work: must be an object in braces."},
        Refused{work(R"({"Suffixes": ".a"})"),
            "decoding JSON body: Profiles.work.Suffixes: must be a list of texts in square brackets."},
        Refused{work(R"({"Suffixes": [".a", 7]})"),
            "decoding JSON body: Profiles.work.Suffixes[1]: must be a text in double quotes."},
        Refused{work(R"({"Port": "1"})"),
            "decoding JSON body: Profiles.work.Port: must be a whole number from 0 to 65535."},
        Refused{R"({"Future": 1})", R"(decoding JSON body: the top level: unknown field "Future".)"},
        Refused{R"({"Tunnels": {}})", R"(decoding JSON body: the top level: unknown field "Tunnels".)"},
        Refused{R"({"Router": {"Http": ""}})", R"(decoding JSON body: Router: unknown field "Http".)"},
        Refused{work(R"({"Note": ""})"), R"(decoding JSON body: Profiles.work: unknown field "Note".)"}));

INSTANTIATE_TEST_SUITE_P(Profiles, RefusedConfig,
    ::testing::Values(
        Refused{R"({"Profiles": {"A b": {}}})",
            "The profile name \"A b\" must be lowercase letters, numbers, hyphen or underscore, start with a letter or "
            "number, and have at most 63 characters."},
        Refused{work(R"({"Port": 70000})"), "Profiles.work.Port must be a whole number from 0 to 65535."},
        Refused{work(R"({"Backend": "x"})"),
            R"(Profiles.work.Backend "x" is not known; it must be "tsnet" or "tailscaled".)"},
        Refused{work(R"({"DisplayName": "a\nb"})"), R"(Profile "work": DisplayName holds a control character.)"},
        Refused{work(R"({"StateDir": ")" + std::string(1025, 'x') + "\"}"),
            R"(Profile "work": StateDir has more than 1024 bytes.)"},
        Refused{work(R"({"Hostname": "-x"})"),
            "Profile \"work\": Hostname must be at most 63 letters, numbers or hyphens, and cannot start or end with a "
            "hyphen."},
        Refused{work(R"({"Suffixes": ["a/b"]})"),
            R"(Profile "work": the suffix "a/b" is not the end of a host name, such as ".tail1a2b.ts.net".)"},
        Refused{work(R"({"Suffixes": ["a b"]})"),
            R"(Profile "work": the suffix "a b" is not the end of a host name, such as ".tail1a2b.ts.net".)"},
        Refused{work(R"({"Suffixes": ["."]})"),
            R"(Profile "work": the suffix "." is not the end of a host name, such as ".tail1a2b.ts.net".)"},
        Refused{work(R"({"IPRoutes": ["10.0.0.0/33"]})"),
            R"(Profile "work": the IP route "10.0.0.0/33" is not a range of addresses, such as 10.0.0.0/8.)"},
        Refused{work(R"({"HTTPProxy": "0.0.0.0:1"})"),
            "Profile \"work\": HTTPProxy must be bound to loopback, so that no other computer can reach it: use "
            "127.0.0.1, localhost or [::1]."},
        Refused{R"({"Profiles": {"home": {"Suffixes": ["WORK.ts.net"]}}})",
            "Overlapping suffix \"WORK.ts.net\": profile \"home\" has it, and profile \"work\" has it already.", 409},
        Refused{R"({"Profiles": {"home": {"IPRoutes": ["10.1.2.3/8"]}}})",
            "Overlapping IP route \"10.1.2.3/8\": profile \"home\" has it, and profile \"work\" has it already.",
            409}));

INSTANTIATE_TEST_SUITE_P(Router, RefusedConfig,
    ::testing::Values(Refused{router(R"({"HTTPProxy": "127.0.0.1"})"),
                          "Router.HTTPProxy must be HOST:PORT, for example 127.0.0.1:43200."},
        Refused{router(R"({"SOCKS5Proxy": "10.0.0.1:80"})"),
            "Router.SOCKS5Proxy must be bound to loopback, so that no other computer can reach it: use 127.0.0.1, "
            "localhost or [::1]."},
        Refused{router(R"({"PACListen": "localhost:0"})"),
            "Router.PACListen must end in a port from 1 to 65535, for example 127.0.0.1:43200."},
        Refused{
            router(R"({"TunnelListenBase": 0})"), "Router.TunnelListenBase must be a whole number from 1 to 65535."},
        Refused{router(R"({"ProfileHostnameBase": "-x"})"),
            "Router.ProfileHostnameBase must be 1 to 63 lowercase letters, numbers or hyphens, and cannot start or end "
            "with a hyphen."},
        Refused{router(R"({"PACListen": "[::1]:43100"})"),
            "Router.PACListen uses port 43100, which is already assigned to Router.HTTPProxy."},
        Refused{router(R"({"HTTPProxy": "localhost:43200"})"),
            "Router.HTTPProxy uses port 43200, which is already assigned to the control API."},
        Refused{router(R"({"ProfileUDPPortBase": 43300})"),
            "Router.ProfileUDPPortBase uses port 43300, which is already assigned to Router.TunnelListenBase."},
        Refused{router(R"({"ProfileHTTPProxyBase": 65534})"),
            "There are too many profiles for the base ports: the ports of profile \"home\" would lie beyond 65535."},
        Refused{router(R"({"ProfileSOCKS5Base": 43112})"),
            "Port 43112 of the HTTP proxy of profile \"home\" is already assigned to the SOCKS5 proxy of profile "
            "\"work\"."},
        Refused{R"({"Profiles": {"work": {"Port": 43401}}})",
            "The UDP port of profile \"home\" would be 43401, which is already assigned to another profile."},
        Refused{R"({"Router": {"TunnelListenBase": 50000, "PACListen": "127.0.0.1:43300"}})",
            "Port 43300 of the PAC server is already assigned to tunnel \"db\"."},
        Refused{router(R"({"PACListen": "127.0.0.1:8080"})"),
            "Port 8080 of the PAC server is already assigned to the service behind publication \"web\"."}));

TEST_F(SaveConfig, RefusalsHaveTheWordsThatTheApplicationLooksFor)
{
    const std::pair<std::string, int> rows[] = {{R"({"Future": 1})", 1}, {R"({"Version": null})", 1},
        {R"({"Profiles": {"home": {"Suffixes": [".work.ts.net"]}}})", 2}, {work(R"({"Suffixes": ["a b"]})"), 3},
        {R"({"Profiles": {"A b": {}}})", 4}, {work(R"({"Port": 70000})"), 6}, {work(R"({"Hostname": "-x"})"), 6},
        {router(R"({"PACListen": "0.0.0.0:1"})"), 6}, {router(R"({"PACListen": "[::1]:43100"})"), 6}};
    for (const auto &[change, row] : rows) {
        const std::string sentence = test::errorOf(save(laidOver(document(), json::parse(change))));
        EXPECT_EQ(test::configurationRow(sentence), row) << sentence;
    }
}

TEST_F(SaveConfig, SuffixWithACharacterThatNobodySeesIsRefused)
{
    const std::string before = bed.filesOnDisk();
    for (const std::string hidden : {"\u00AD", "\u034F", "\u115F", "\u200B", "\u200D", "\u202E", "\u2060", "\u2800",
             "\u3164", "\uFE0F", "\uFEFF", "\U000E0061", "\u00A0", "\u3000", "\u0085", "\u0378"}) {
        const std::string suffix = ".wo" + hidden + "rk.ts.net";
        const ControlAnswer answer =
            save(laidOver(document(), {{"Profiles", {{"work", {{"Suffixes", json::array{suffix}}}}}}}));
        EXPECT_EQ(answer.status, 400U) << suffix;
        EXPECT_THAT(test::errorOf(answer),
            ::testing::AllOf(StartsWith("Profile \"work\": the suffix \".wo"),
                ::testing::EndsWith("rk.ts.net\" holds an invisible character, so no host name could end like it.")));
        EXPECT_EQ(test::configurationRow(test::errorOf(answer)), 3);
    }
    EXPECT_EQ(bed.filesOnDisk(), before);
}

TEST_F(SaveConfig, SuffixOfAnyScriptIsTaken)
{
    for (const std::string suffix : {".bücher.example", ".例え.jp", ".नमस्ते.ts.net", ".مثال.ts.net", ".a_b-c.ts.net"}) {
        const ControlAnswer answer =
            save(laidOver(document(), {{"Profiles", {{"work", {{"Suffixes", json::array{suffix}}}}}}}));
        EXPECT_EQ(answer.status, 200U) << suffix << test::errorOf(answer);
    }
}

TEST_F(SaveConfig, BodiesThatAreNoJson)
{
    const std::string before = bed.filesOnDisk();
    for (const std::string &body : {std::string(), std::string("{"), std::string("{} {}"), std::string(1000, '['),
             std::string(R"({"Version": 1, "Version": 1})"), std::string("\xFF"), std::string("{\"a\0\":1}", 8)}) {
        const ControlAnswer answer = bed.ask("POST", std::string(path), body);
        EXPECT_EQ(answer.status, 400U) << body;
        EXPECT_THAT(test::errorOf(answer), StartsWith("decoding JSON body: ")) << body;
    }
    EXPECT_THAT(test::errorOf(bed.ask("POST", std::string(path), R"({"Version": 1, "Version": 1})")),
        HasSubstr("the key \"Version\": stands twice"));
    EXPECT_EQ(test::errorOf(bed.ask("POST", "/api/config?force=maybe", json::serialize(document()))),
        "The value of force must be true or false.");
    EXPECT_EQ(bed.filesOnDisk(), before);
}

} // namespace

} // namespace veranox
