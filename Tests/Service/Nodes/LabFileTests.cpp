#include "Service/Files/Folder.h"
#include "Service/Json/JsonProblem.h"
#include "Service/Nodes/Lab/LabDemo.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/Words.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using ::testing::HasSubstr;

std::string complaintOf(const std::string &text)
{
    try {
        parseLab(text);
    } catch (const JsonProblem &problem) {
        return problem.what();
    }
    return "";
}

std::string withTailnet(const std::string &tailnet)
{
    return R"({"version": 1, "tailnets": {"net": )" + tailnet + "}}";
}

std::string withProfile(const std::string &members)
{
    return R"({"version": 1, "tailnets": {"net": {"suffix": ".t"}}, "profiles": {"p": {"tailnet": "net")"
        + (members.empty() ? "" : ", " + members) + "}}}";
}

std::string with(const std::string &section, const std::string &members)
{
    return R"({"version": 1, "tailnets": {}, ")" + section + R"(": {"x": {)" + members + "}}}";
}

TEST(LabFile, ReadsEverything)
{
    const LabNetwork lab = parseLab(R"({"version": 1,
        "tailnets": {"net": {"suffix": ".t", "hosts": {"wiki": "site", "redis": "echo", "hole": "blackhole",
            "db": "127.0.0.1:5432", "box": "127.0.0.1", "six": "[::1]:80"}}},
        "profiles": {"p": {"tailnet": "net", "settles_after_s": 1.5, "needs_login": true, "approved_after_s": 20,
            "fails": "why", "fails_after_s": 60, "policy": {"admits": 2}, "config": {"DisplayName": "P"}}},
        "tunnels": {"t": {"starts_after_s": 2, "fails": "no", "active_connections": 3,
            "config": {"Profile": "p", "Target": "db:1"}}},
        "publications": {"x": {"config": {"Profile": "p", "Target": "127.0.0.1:1", "Port": 2}}}})");
    const NamedList<LabHost> &hosts = lab.tailnets.at(0).second.hosts;
    EXPECT_EQ(hosts,
        (NamedList<LabHost>{{"wiki", {LabHost::Kind::site, "", 0}}, {"redis", {LabHost::Kind::echo, "", 0}},
            {"hole", {LabHost::Kind::blackhole, "", 0}}, {"db", {LabHost::Kind::address, "127.0.0.1", 5432}},
            {"box", {LabHost::Kind::address, "127.0.0.1", 0}}, {"six", {LabHost::Kind::address, "::1", 80}}}));
    const LabProfile &profile = lab.profiles.at(0).second;
    EXPECT_EQ(profile.settlesAfter, LabTime(1500));
    EXPECT_TRUE(profile.needsLogin);
    EXPECT_EQ(profile.approvedAfter, LabTime(20000));
    EXPECT_EQ(profile.failure->text, "why");
    EXPECT_EQ(profile.failure->after, LabTime(60000));
    EXPECT_EQ(profile.policy.devices, 2);
    EXPECT_EQ(profile.config->displayName, "P");
    const LabTunnel &tunnel = lab.tunnels.at(0).second;
    EXPECT_EQ(tunnel.startsAfter, LabTime(2000));
    EXPECT_EQ(tunnel.failure->after, LabTime(2000)) << "a failure strikes at the start unless told otherwise";
    EXPECT_EQ(tunnel.activeConns, 3);
    EXPECT_EQ(tunnel.config->target, "db:1");
    EXPECT_EQ(lab.publications.at(0).second.config->port, 2);
}

TEST(LabFile, SmallestFile)
{
    EXPECT_EQ(complaintOf(R"({"version": 1, "tailnets": {}})"), "");
}

TEST(LabFile, ComplaintsNameThePlace)
{
    const std::string hostRule =
        R"(must be "site", "echo", "blackhole" or a loopback address such as "127.0.0.1:8080")";
    const std::pair<std::string, std::string> table[] = {
        {"", "line 1, column 1: the text ends before the JSON value does"},
        {"{\n\"version\": 1,\n}", "line 3, column 1: syntax error"},
        {"[]", "the top level: must be an object in braces"},
        {"{}", "the top level: the key \"version\" is missing"},
        {R"({"version": 2, "tailnets": {}})", "version: must be a whole number from 1 to 1"},
        {R"({"version": 1})", "the top level: the key \"tailnets\" is missing"},
        {R"({"version": 1, "tailnets": {}, "profile": {}})", "profile: is not a key that is known here"},
        {R"({"version": 1, "tailnets": {}, "tailnets": {}})",
            "the key \"tailnets\": stands twice in one object, so one of the two would be lost"},
        {R"({"version": 1, "tailnets": {"A b": {}}})",
            "tailnets.\"A b\": is not a name that can be used: it " + std::string(nameRule)},
        {withTailnet("7"), "tailnets.net: must be an object in braces"},
        {withTailnet("{}"), "tailnets.net: the key \"suffix\" is missing"},
        {withTailnet(R"({"suffix": "t"})"),
            "tailnets.net.suffix: must begin with a full stop, for example \".tail1a2b.ts.net\""},
        {withTailnet(R"({"suffix": "."})"),
            "tailnets.net.suffix: must begin with a full stop, for example \".tail1a2b.ts.net\""},
        {withTailnet(R"({"suffix": ".t", "host": {}})"), "tailnets.net.host: is not a key that is known here"},
        {withTailnet(R"({"suffix": ".t", "hosts": {"db": "10.0.0.1:1"}})"), "tailnets.net.hosts.db: " + hostRule},
        {withTailnet(R"({"suffix": ".t", "hosts": {"db": "127.0.0.1:0"}})"), "tailnets.net.hosts.db: " + hostRule},
        {withTailnet(R"({"suffix": ".t", "hosts": {"db": 5}})"), "tailnets.net.hosts.db: " + hostRule},
        {with("profiles", ""), "profiles.x: the key \"tailnet\" is missing"},
        {with("profiles", R"("tailnet": "gone")"),
            "profiles.x.tailnet: names \"gone\", which is not among the tailnets"},
        {withProfile(R"("settles_after_s": -1)"),
            "profiles.p.settles_after_s: must be a number of seconds from 0 to 86400"},
        {withProfile(R"("settles_after_s": 86401)"),
            "profiles.p.settles_after_s: must be a number of seconds from 0 to 86400"},
        {withProfile(R"("needs_login": 1)"), "profiles.p.needs_login: must be true or false"},
        {withProfile(R"("approved_after_s": "2")"),
            "profiles.p.approved_after_s: must be a number of seconds from 0 to 86400"},
        {withProfile(R"("fails": true)"), "profiles.p.fails: must be a text in double quotes"},
        {withProfile(R"("fails_after_s": 2)"),
            "profiles.p.fails_after_s: needs the key \"fails\" with the text of the failure beside it"},
        {withProfile(R"("setles_after_s": 2)"), "profiles.p.setles_after_s: is not a key that is known here"},
        {withProfile(R"("policy": {"admits": "some"})"),
            R"(profiles.p.policy.admits: "some" is not known; it must be "everyone", "nobody" or "unknown")"},
        {withProfile(R"("policy": {"admits": true})"),
            R"(profiles.p.policy.admits: must be "everyone", "nobody", "unknown" or a number of devices)"},
        {withProfile(R"("policy": {"admits": -1})"),
            "profiles.p.policy.admits: must be a whole number from 0 to 1000000"},
        {withProfile(R"("policy": {"admits": "nobody"})"), "profiles.p.policy: the key \"hint\" is missing"},
        {withProfile(R"("policy": {"admits": "nobody", "hint": {"host_alias": "h"}})"),
            "profiles.p.policy.hint: the key \"node_ip\" is missing"},
        {withProfile(R"("policy": {"hint": {}})"), "profiles.p.policy.hint: is not a key that is known here"},
        {withProfile(R"("config": {"Icon": 5})"), "profiles.p.config.Icon: must be a text in double quotes"},
        {with("tunnels", R"("starts_after_s": null, "starts": 1)"),
            "tunnels.x.starts: is not a key that is known here"},
        {with("tunnels", R"("active_connections": 1.5)"),
            "tunnels.x.active_connections: must be a whole number from 0 to 1000000"},
        {with("tunnels", R"("config": {"Target": "a:1"})"), "tunnels.x.config: the key \"Profile\" is missing"},
        {with("tunnels", R"("config": {"Target": "a:1", "Profile": "p", "Mode": "ssh"})"),
            R"(tunnels.x.config.Mode: is "ssh", but the key "SSH" with the bastion is missing)"},
        {with("publications", R"("config": {"Target": "a:1", "Profile": "p"})"),
            "publications.x.config: the key \"Port\" is missing"},
    };
    for (const auto &[text, complaint] : table)
        EXPECT_EQ(complaintOf(text), complaint) << text;
}

TEST(LabFile, SentencesNameTheFileAndTheRemedy)
{
    const test::TemporaryFolder folder;
    folder.write("lab.json", "{");
    const std::string file = (folder / "lab.json").string();
    try {
        loadLab(file);
        ADD_FAILURE();
    } catch (const ServiceProblem &problem) {
        EXPECT_EQ(problem.what(),
            "The lab file " + file
                + " is not valid: at line 1, column 2: the text ends before the JSON value does; mend it and start "
                  "again.");
    }
    for (const std::string &place : {folder.path().string(), (folder / "none").string(), std::string("/dev/zero")}) {
        try {
            loadLab(place);
            ADD_FAILURE() << place;
        } catch (const ServiceProblem &problem) {
            EXPECT_THAT(problem.what(), HasSubstr("The lab file " + place + " cannot be used ("));
        }
    }
}

TEST(LabFile, ExampleOfTheDocumentationIsValid)
{
    const std::string text = readWholeFile(VERANOX_SOURCE_DIR "/docs/lab-network.md", 100000);
    const std::string fence = "```json\n";
    const std::size_t begin = text.find(fence) + fence.size();
    const LabNetwork lab = parseLab(std::string_view(text).substr(begin, text.find("```", begin) - begin));
    EXPECT_EQ(lab.profiles.at(0).first, "office");
}

TEST(LabDemo, IsValid)
{
    EXPECT_EQ(complaintOf(std::string(labDemoText())), "");
}

} // namespace

} // namespace veranox
