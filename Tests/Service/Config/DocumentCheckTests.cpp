#include "Service/Config/ConfigStore.h"
#include "Service/Json/JsonText.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Tunnels/SshCommand.h"
#include "Tests/Service/Control/SaveConfig.h"
#include "Tests/Service/Support/FakeTime.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace veranox {

namespace {

namespace json = boost::json;
using ::testing::ElementsAre;

/// The file with the members of the change laid over it, at any depth.
json::value laidOver(json::value base, const json::value &change)
{
    if (!change.is_object() || !base.is_object())
        return change;
    for (const auto &[key, value] : change.get_object())
        base.get_object()[key] = laidOver(base.get_object()[key], value);
    return base;
}

std::string fileWith(const std::string &change)
{
    return json::serialize(laidOver(json::parse(test::save_config::file), json::parse(change)));
}

/// How a file differs from a good one, and why the service does not start with it.
struct Refused {
    std::string change;
    std::string says;
};

class RefusedFile : public ::testing::TestWithParam<Refused> { };

TEST_P(RefusedFile, StartsNothingAndIsLeftAsItIs)
{
    const test::TemporaryFolder folder;
    const std::string text = fileWith(GetParam().change);
    folder.write("config.json", text);
    for (int start = 0; start < 2; ++start) {
        ConfigStore store(folder.path());
        try {
            store.load(test::FakeTime().wallNow(), 43200);
            ADD_FAILURE() << "it starts";
        } catch (const ServiceProblem &problem) {
            EXPECT_EQ(problem.what(),
                "The configuration file " + (folder / "config.json").string() + " cannot be used: " + GetParam().says
                    + "; it was left as it is: mend it, or move it away to begin with an empty configuration.");
        }
        EXPECT_EQ(store.document(), ConfigDocument{});
    }
    EXPECT_EQ(folder.read("config.json"), text);
    EXPECT_THAT(folder.names(), ElementsAre("config.json"));
}

std::string tunnel(const std::string &members)
{
    return R"({"Tunnels": {"db": )" + members + "}}";
}

std::string secondTunnel(const std::string &listen)
{
    return R"({"Tunnels": {"two": {"Profile": "work", "Target": "a:1", "Listen": ")" + listen + R"("}}})";
}

std::string publication(const std::string &members)
{
    return R"({"Publications": {"web": )" + members + "}}";
}

INSTANTIATE_TEST_SUITE_P(Document, RefusedFile,
    ::testing::Values(Refused{R"({"Router": {"HTTPProxy": "0.0.0.0:43100"}})",
                          "Router.HTTPProxy must be bound to loopback, so that no other computer can reach it: use "
                          "127.0.0.1, localhost or [::1]"},
        Refused{R"({"Router": {"PACListen": "127.0.0.1:43200"}})",
            "Router.PACListen uses port 43200, which is already assigned to the control API"},
        Refused{R"({"Profiles": {"work": {"Hostname": "-"}}})",
            "Profile \"work\": Hostname must be at most 63 letters, numbers or hyphens, and cannot start or end with a "
            "hyphen"},
        Refused{R"({"Profiles": {"home": {"Suffixes": [".work.ts.net"]}}})",
            "Overlapping suffix \".work.ts.net\": profile \"home\" has it, and profile \"work\" has it already"},
        Refused{R"({"Profiles": {"work": {"SOCKS5Proxy": "192.168.0.1:1"}}})",
            "Profile \"work\": SOCKS5Proxy must be bound to loopback, so that no other computer can reach it: use "
            "127.0.0.1, localhost or [::1]"},
        Refused{tunnel(R"({"Listen": "0.0.0.0:43300"})"),
            "Tunnel \"db\": The local address must be bound to loopback, so that no other computer can reach it: use "
            "127.0.0.1, localhost or [::1]"},
        Refused{
            tunnel(R"({"Target": "db"})"), "Tunnel \"db\": The target must be host:port, for example db.example:5432"},
        Refused{tunnel(R"({"DisplayName": "a\tb"})"), "Tunnel \"db\": The display name holds a control character"},
        Refused{tunnel(R"({"Mode": "ssh", "SSH": {"Bastion": "b", "User": "-u"}})"),
            "Tunnel \"db\": The SSH user cannot start with a hyphen or hold a blank or an @"},
        Refused{secondTunnel("[::1]:43300"), "Tunnel \"two\": The local address [::1]:43300 is taken by tunnel \"db\""},
        Refused{secondTunnel("127.0.0.1:8080"),
            "Tunnel \"two\": The local address 127.0.0.1:8080 is taken by the service behind publication \"web\""},
        Refused{publication(R"({"Target": "example.com:80"})"),
            "Publication \"web\": The target must be a loopback address such as 127.0.0.1:8080"},
        Refused{publication(R"({"DisplayName": "a\tb"})"),
            "Publication \"web\": The display name holds a control character"},
        Refused{R"({"Publications": {"two": {"Profile": "home", "Target": "127.0.0.1:9", "Port": 443,
            "Reach": "tailnet"}}})",
            "Publication \"two\": The publication endpoint home:443 is taken by publication \"web\""}));

class LoadedFile : public test::save_config::SaveConfig {
protected:
    /// Whether a service that is started now takes the file.
    void expectLoaded() const
    {
        ConfigStore store(bed.folder().path());
        EXPECT_NO_THROW(store.load(test::FakeTime().wallNow(), test::ApiBed::port));
    }
};

TEST_F(LoadedFile, WhateverSavesLeaveBehindIsTakenAtTheNextStart)
{
    expectLoaded();
    json::object config = document();
    config["Profiles"].as_object()["home"].as_object()["Backend"] = "tailscaled"; // under a publication
    ASSERT_EQ(save(config).status, 200U);
    expectLoaded();
    config["Profiles"].as_object().clear(); // under a tunnel and a publication
    ASSERT_EQ(save(config).status, 200U);
    expectLoaded();
    config["Router"].as_object()["ProfileUDPPortBase"] = 0;
    ASSERT_EQ(save(config).status, 200U);
    expectLoaded();
}

TEST(TunnelCheck, WhatIsSavedCanBeStartedAndWhatCannotIsNotSaved)
{
    test::ApiBed bed(test::save_config::file);
    const SshPlaces places{"/usr/lib/veranox", "/home/me/known_hosts", processEnvironment};
    const SshSockets sockets{"/run/dial", "/run/askpass", "/run/forward"};
    ASSERT_NO_THROW(
        sshCommand({.target = "a:1", .ssh = TunnelSSHSettings{.bastion = "b", .user = "u"}}, places, sockets))
        << "ssh is installed";
    const std::vector<std::string> words{"b", "b:22", "[::1]", "[::1]:22", "::1", "a\"b", "a'b", "a\\b", "a$b", "a%b",
        "-b", "a b", "a@b", "ü", "a,b", "a;b", "", "b:", ":22", "b:0"};
    int saved = 0;
    int refused = 0;
    for (const std::string &bastion : words)
        for (const std::string &user : words)
            for (const std::string &path : {"/" + user, std::string("/k"), std::string("k")}) {
                const TunnelSSHSettings ssh{.bastion = bastion, .user = user, .auth = "key", .identityFile = path};
                const json::value body{{"Name", "t"},
                    {"Tunnel",
                        {{"DisplayName", ""}, {"Profile", "work"}, {"Mode", "ssh"}, {"Listen", ""}, {"Target", "a:1"},
                            {"Disabled", false},
                            {"SSH", {{"Bastion", bastion}, {"User", user}, {"Auth", "key"}, {"IdentityFile", path}}}}}};
                const unsigned status = bed.ask("POST", "/api/tunnels", json::serialize(body)).status;
                const TunnelSettings tunnel{.mode = "ssh", .target = "a:1", .ssh = ssh};
                if (status == 200U) {
                    ++saved;
                    EXPECT_NO_THROW(sshCommand(tunnel, places, sockets)) << bastion << " " << user << " " << path;
                    ASSERT_EQ(bed.ask("DELETE", "/api/tunnels/t").status, 200U);
                } else {
                    ++refused;
                    EXPECT_EQ(status, 400U);
                }
            }
    EXPECT_GT(saved, 20);
    EXPECT_GT(refused, 100);
}

} // namespace

} // namespace veranox
