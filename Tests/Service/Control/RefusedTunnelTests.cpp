#include "Tests/Service/Control/TunnelWrites.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

using namespace test::tunnel_writes;

/// A refused save of a tunnel: its body, and which sentence the application makes of it.
struct RefusedSave {
    std::string body;
    std::string sentence;
    int row = 4;
    unsigned status = 400;
};

class RefusedTunnel : public TunnelWrites, public ::testing::WithParamInterface<RefusedSave> { };

TEST_P(RefusedTunnel, ChangesNothing)
{
    test::expectRefused(bed, {"POST", "/api/tunnels", GetParam().body, GetParam().status, GetParam().sentence});
    EXPECT_EQ(test::tunnelRow(GetParam().sentence), GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Shape, RefusedTunnel,
    ::testing::Values(
        RefusedSave{"", "decoding JSON body: line 1, column 1: the text ends before the JSON value does."},
        RefusedSave{"[]", "decoding JSON body: the top level: must be an object in braces."},
        RefusedSave{R"({"Name": "a", "Name": "b"})",
            "decoding JSON body: the key \"Name\": stands twice in one object, so one of the two would be lost."},
        RefusedSave{save(R"({"Name": null})"), R"(decoding JSON body: the top level: the key "Name" is missing.)"},
        RefusedSave{save(R"({"Name": 7})"), "decoding JSON body: Name: must be a text in double quotes."},
        RefusedSave{
            save(R"({"OriginalName": 7})"), "decoding JSON body: OriginalName: must be a text in double quotes."},
        RefusedSave{save(R"({"Tunnel": null})"), R"(decoding JSON body: the top level: the key "Tunnel" is missing.)"},
        RefusedSave{save(R"({"Future": 1})"), R"(decoding JSON body: the top level: unknown field "Future".)"},
        RefusedSave{savedTunnel(R"({"DisplayName": null})"),
            R"(decoding JSON body: Tunnel: the key "DisplayName" is missing.)"},
        RefusedSave{savedTunnel(R"({"Listen": null})"), R"(decoding JSON body: Tunnel: the key "Listen" is missing.)"},
        RefusedSave{
            savedTunnel(R"({"Disabled": "no"})"), "decoding JSON body: Tunnel.Disabled: must be true or false."},
        RefusedSave{savedTunnel(R"({"Password": "x"})"), R"(decoding JSON body: Tunnel: unknown field "Password".)"},
        RefusedSave{
            savedTunnel(R"({"Mode": "udp"})"), R"(Tunnel.Mode "udp" is not known; it must be "native" or "ssh".)"},
        RefusedSave{savedTunnel(R"({"Mode": "ssh"})"),
            R"(decoding JSON body: Tunnel.Mode: is "ssh", but the key "SSH" with the bastion is missing.)"},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "u", "Auth": "agent"})"),
            R"(decoding JSON body: Tunnel.SSH: the key "IdentityFile" is missing.)"},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "u", "Auth": "agent", "IdentityFile": "", "Password": "x"})"),
            R"(decoding JSON body: Tunnel.SSH: unknown field "Password".)"},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "u", "Auth": "magic", "IdentityFile": ""})"),
            R"(Tunnel.SSH.Auth "magic" is not known; it must be "agent", "key" or "password".)"}));

INSTANTIATE_TEST_SUITE_P(Names, RefusedTunnel,
    ::testing::Values(
        RefusedSave{save(R"({"Name": "A b"})"),
            "The tunnel name \"A b\" must be lowercase letters, numbers, hyphen or underscore, start with a letter or "
            "number, and have at most 63 characters."},
        RefusedSave{save(R"({"Name": "db"})"), "A tunnel named \"db\" already exists.", 1, 409},
        RefusedSave{
            save(R"({"Name": "db", "OriginalName": "cache"})"), "A tunnel named \"db\" already exists.", 1, 409},
        RefusedSave{save(R"({"OriginalName": "gone"})"), "The tunnel \"gone\" does not exist.", 2, 404},
        RefusedSave{save(R"({"Name": "gone", "OriginalName": "gone"})"), "The tunnel \"gone\" does not exist.", 2, 404},
        RefusedSave{savedTunnel(R"({"DisplayName": "a\tb"})"), "The display name holds a control character."}));

INSTANTIATE_TEST_SUITE_P(Values, RefusedTunnel,
    ::testing::Values(RefusedSave{savedTunnel(R"({"Profile": "x"})"),
                          "Profile \"x\" is no longer in the configuration; choose an existing profile."},
        RefusedSave{savedTunnel(R"({"Target": "db"})"), "The target must be host:port, for example db.example:5432."},
        RefusedSave{savedTunnel(R"({"Target": ":80"})"), "The target must be host:port, but has an empty host."},
        RefusedSave{
            savedTunnel(R"({"Target": "db:http"})"), "The target must be host:port, and the port must be numeric."},
        RefusedSave{
            savedTunnel(R"({"Target": "db:65536"})"), "The target must be host:port with a port from 1 to 65535."},
        RefusedSave{savedTunnel(R"({"Target": "-oProxyCommand=x:1"})"),
            "The target must be host:port with a host name, an address, or an IPv6 address in brackets."},
        RefusedSave{savedTunnel(R"({"Target": "::1:80"})"),
            "The target must be host:port with a host name, an address, or an IPv6 address in brackets."},
        RefusedSave{ssh(R"({"Bastion": "", "User": "u", "Auth": "agent", "IdentityFile": ""})"),
            "An SSH tunnel needs a bastion host and an SSH user; the bastion host is missing."},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "", "Auth": "agent", "IdentityFile": ""})"),
            "An SSH tunnel needs a bastion host and an SSH user; the SSH user is missing."},
        RefusedSave{ssh(R"({"Bastion": "-oProxyCommand=x", "User": "u", "Auth": "agent", "IdentityFile": ""})"),
            "The bastion host cannot start with a hyphen or hold a blank or an @."},
        RefusedSave{ssh(R"({"Bastion": "b:ssh", "User": "u", "Auth": "agent", "IdentityFile": ""})"),
            "The bastion host must be a host name or an address, with its port behind it where that is not 22."},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "a b", "Auth": "agent", "IdentityFile": ""})"),
            "The SSH user cannot start with a hyphen or hold a blank or an @."},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "u", "Auth": "key", "IdentityFile": "id_rsa"})"),
            "The private key must be an absolute path."},
        RefusedSave{ssh(R"({"Bastion": "b", "User": "u", "Auth": "key", "IdentityFile": "/a\nb"})"),
            "The private key's path holds a control character."},
        RefusedSave{
            savedTunnel(R"({"Listen": "43300"})"), "The local address must be HOST:PORT, for example 127.0.0.1:43200."},
        RefusedSave{savedTunnel(R"({"Listen": "0.0.0.0:5000"})"),
            "The local address must be bound to loopback, so that no other computer can reach it: use 127.0.0.1, "
            "localhost or [::1]."},
        RefusedSave{savedTunnel(R"({"Listen": "127.0.0.1:43300"})"),
            "The local address 127.0.0.1:43300 is taken by tunnel \"db\".", 4, 409},
        RefusedSave{savedTunnel(R"({"Listen": "[::1]:43100"})"),
            "The local address [::1]:43100 is taken by the HTTP proxy.", 4, 409},
        RefusedSave{savedTunnel(R"({"Listen": "localhost:43200"})"),
            "The local address 127.0.0.1:43200 is taken by the control API.", 4, 409},
        RefusedSave{savedTunnel(R"({"Listen": "127.0.0.1:43111"})"),
            "The local address 127.0.0.1:43111 is taken by the SOCKS5 proxy of profile \"work\".", 4, 409},
        RefusedSave{savedTunnel(R"({"Listen": "127.0.0.1:8080"})"),
            "The local address 127.0.0.1:8080 is taken by the service behind publication \"web\".", 4, 409}));

INSTANTIATE_TEST_SUITE_P(Order, RefusedTunnel,
    ::testing::Values(RefusedSave{save(R"({"Name": "db"})", R"({"Profile": "x", "Target": "", "Listen": "x"})"),
                          "A tunnel named \"db\" already exists.", 1, 409},
        RefusedSave{savedTunnel(R"({"Profile": "x", "Target": "", "Listen": "x"})"),
            "Profile \"x\" is no longer in the configuration; choose an existing profile."},
        RefusedSave{savedTunnel(R"({"Target": "", "Listen": "x"})"),
            "The target must be host:port, for example db.example:5432."}));

TEST_F(TunnelWrites, NamesThatThereAreNot)
{
    const std::string sentence = "The tunnel \"gone\" is not configured.";
    EXPECT_EQ(test::tunnelRow(sentence), 3);
    test::expectRefused(bed, {"DELETE", "/api/tunnels/gone", "", 404, sentence});
    for (const std::string path : {"/start", "/stop", "/restart"})
        test::expectRefused(bed, {"POST", "/api/tunnels/gone" + path, "", 404, sentence});
    test::expectRefused(bed, {"POST", "/api/tunnels/gone/secret", R"({"Password": "x"})", 404, sentence});
    test::expectRefused(bed, {"DELETE", "/api/tunnels/a%20b%22", "", 404, "The tunnel \"a b\"\" is not configured."});
}

TEST_F(TunnelWrites, RefusedRestartsAndSecrets)
{
    test::expectRefused(bed,
        {"POST", "/api/tunnels/cache/restart", "", 409, "The tunnel \"cache\" is switched off; switch it on instead."});
    test::expectRefused(bed,
        {"POST", "/api/tunnels/db/secret", R"({"Password": "x"})", 409,
            "The tunnel \"db\" does not sign in with a password."});
    const std::string path = "/api/tunnels/deep/secret";
    test::expectRefused(
        bed, {"POST", path, "{}", 400, R"(decoding JSON body: the top level: the key "Password" is missing.)"});
    test::expectRefused(bed,
        {"POST", path, R"({"Password": "hidden", "More": 1})", 400,
            R"(decoding JSON body: the top level: unknown field "More".)"});
    test::expectRefused(
        bed, {"POST", path, R"({"Password": "two\nlines"})", 400, "The password holds a control character."});
    test::expectRefused(bed,
        {"POST", path, R"({"Password": ")" + std::string(1025, 'x') + "\"}", 400,
            "The password has more than 1024 bytes."});
}

TEST_F(TunnelWrites, PasswordOfFormerDaysTakesNoSecret)
{
    ASSERT_EQ(bed.ask("POST", "/api/tunnels",
                     save(R"({"Name": "deep", "OriginalName": "deep"})",
                         R"({"SSH": {"Bastion": "b", "User": "u", "Auth": "password", "IdentityFile": ""}})"))
                  .status,
        200U);
    test::expectRefused(bed,
        {"POST", "/api/tunnels/deep/secret", R"({"Password": "x"})", 409,
            "The tunnel \"deep\" does not sign in with a password."});
}

TEST_F(TunnelWrites, PortsThatRunOutAreARefusal)
{
    json::object config = bed.ask("GET", "/api/config").body.as_object();
    config["Router"].as_object()["TunnelListenBase"] = 65535;
    ASSERT_EQ(bed.ask("POST", "/api/config?force=true", json::serialize(config)).status, 200U);
    ASSERT_EQ(post("", std::string(good)).status, 200U);
    test::expectRefused(bed,
        {"POST", "/api/tunnels", save(R"({"Name": "one-more"})"), 409,
            "No local port is free from 65535 on; give the tunnel a local address or change the "
            "tunnel base port."});
}

} // namespace

} // namespace veranox
