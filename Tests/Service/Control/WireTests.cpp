#include "Service/Config/ConfigDocument.h"
#include "Service/Json/JsonText.h"
#include "Service/Profiles/ProfileRecord.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace veranox {

namespace {

using boost::json::serialize;

/// The literal without the blanks and line ends that only make it readable.
std::string compact(std::string_view text)
{
    return serialize(parseJson(text));
}

TEST(Wire, ProfileWithEverythingGiven)
{
    ConfigDocument document;
    document.profiles.emplace_back("work",
        ProfileSettings{.displayName = "Work",
            .icon = "network",
            .color = "red",
            .backend = "tailscaled",
            .hostname = "desk",
            .authKeyEnv = "KEY",
            .controlURL = "https://control.example",
            .suffixes = {".a.ts.net", ".b.ts.net"},
            .matchRoot = true,
            .acceptRoutes = true,
            .ipRoutes = {"10.0.0.0/8"},
            .stateDir = "/state",
            .socket = "/socket",
            .httpProxy = "127.0.0.1:1",
            .socks5Proxy = "127.0.0.1:2",
            .port = 3});
    const NodeStatus status{
        .ok = true, .backendState = "Running", .raw = "raw", .error = "", .since = WallTime(std::chrono::seconds(1))};
    EXPECT_EQ(serialize(profileRecord(document, 0, status)), compact(R"({
        "name": "work", "display_name": "Work", "icon": "network", "color": "red", "hostname": "desk",
        "backend": "tailscaled", "suffixes": [".a.ts.net", ".b.ts.net"], "match_root": true,
        "ip_routes": ["10.0.0.0/8"], "state_dir": "/state", "socket": "/socket", "http_proxy": "127.0.0.1:1",
        "socks5_proxy": "127.0.0.1:2", "udp_port": 3,
        "status": {"ok": true, "backend_state": "Running", "raw": "raw", "error": "",
                   "checked_at": "1970-01-01T00:00:01.000Z"}})"));
}

TEST(Wire, ProfileWithNothingGivenIsFilledIn)
{
    ConfigDocument document;
    document.profiles.emplace_back("first", ProfileSettings{});
    document.profiles.emplace_back("second", ProfileSettings{});
    EXPECT_EQ(serialize(profileRecord(document, 1, NodeStatus{})), compact(R"({
        "name": "second", "display_name": "second", "icon": "", "color": "", "hostname": "veranox-second",
        "backend": "tsnet", "suffixes": [], "match_root": false, "ip_routes": [], "state_dir": "", "socket": "",
        "http_proxy": "127.0.0.1:43112", "socks5_proxy": "127.0.0.1:43113", "udp_port": 43401,
        "status": {"ok": false, "backend_state": "", "raw": "", "error": "",
                   "checked_at": "1970-01-01T00:00:00.000Z"}})"));
}

TEST(Wire, UdpPortThatTheSystemPicksIsNull)
{
    ConfigDocument document;
    document.router.profileUDPPortBase = 0;
    document.profiles.emplace_back("a", ProfileSettings{});
    document.profiles.emplace_back("b", ProfileSettings{});
    EXPECT_TRUE(profileRecord(document, 0, NodeStatus{}).at("udp_port").is_null());
    EXPECT_TRUE(profileRecord(document, 1, NodeStatus{}).at("udp_port").is_null());
}

TEST(Wire, NativeTunnel)
{
    const TunnelSettings settings{.displayName = "DB",
        .profile = "work",
        .mode = "native",
        .listen = "127.0.0.1:43300",
        .target = "db:5432",
        .ssh = std::nullopt,
        .disabled = false};
    EXPECT_EQ(serialize(tunnelRecord("db", settings, {.state = "listening", .activeConns = 2, .lastError = ""})),
        compact(R"({"Name": "db", "DisplayName": "DB", "Profile": "work", "Mode": "native", "Listen": "127.0.0.1:43300",
        "Target": "db:5432", "SSHBastion": "", "SSHUser": "", "SSHAuth": "agent", "SSHIdentity": "", "Disabled": false,
        "State": "listening", "ActiveConns": 2, "LastError": ""})"));
}

TEST(Wire, TunnelThroughABastion)
{
    const TunnelSettings settings{.displayName = "",
        .profile = "work",
        .mode = "ssh",
        .listen = "",
        .target = "db:5432",
        .ssh = TunnelSSHSettings{.bastion = "jump", .user = "me", .auth = "key", .identityFile = "/k"},
        .disabled = true};
    EXPECT_EQ(serialize(tunnelRecord("db", settings, {.state = "error", .activeConns = 0, .lastError = "no"})),
        compact(R"({"Name": "db", "DisplayName": "", "Profile": "work", "Mode": "ssh", "Listen": "",
        "Target": "db:5432", "SSHBastion": "jump", "SSHUser": "me", "SSHAuth": "key", "SSHIdentity": "/k",
        "Disabled": true, "State": "error", "ActiveConns": 0, "LastError": "no"})"));
}

TEST(Wire, PublicationWithHint)
{
    const PublicationSettings settings{.displayName = "Docs",
        .profile = "home",
        .target = "127.0.0.1:80",
        .reach = "tailnet",
        .port = 443,
        .tls = true,
        .disabled = false};
    const PublicationStatus status{.state = "listening",
        .address = "https://a",
        .activeConns = 1,
        .lastError = "",
        .lastActive = "then",
        .reachability = {.state = "unreachable",
            .peers = 0,
            .everyone = false,
            .detail = "d",
            .hint = PolicyHint{.hostAlias = "h",
                .nodeIP = "100.64.0.1",
                .source = "s",
                .hostsEntry = "he",
                .grant = "g",
                .policyURL = "https://p"}}};
    EXPECT_EQ(serialize(publicationRecord("docs", settings, status)),
        compact(R"({"Name": "docs", "DisplayName": "Docs", "Profile": "home", "Target": "127.0.0.1:80",
        "Reach": "tailnet", "Port": 443, "TLS": true, "Disabled": false, "State": "listening", "Address": "https://a",
        "ActiveConns": 1, "LastError": "", "LastActive": "then", "Reachability": {"State": "unreachable", "Peers": 0,
        "Everyone": false, "Detail": "d", "Hint": {"HostAlias": "h", "NodeIP": "100.64.0.1", "Source": "s",
        "HostsEntry": "he", "Grant": "g", "PolicyURL": "https://p"}}})"));
}

TEST(Wire, PublicationWithoutHintSendsNull)
{
    const boost::json::object record = publicationRecord("a", {}, {});
    EXPECT_TRUE(record.at("Reachability").at("Hint").is_null());
    EXPECT_EQ(record.at("State"), "stopped");
    EXPECT_EQ(record.at("Reachability").at("State"), "");
}

TEST(Wire, EmptyConfigurationHasTheDefaults)
{
    EXPECT_EQ(serialize(configRecord(ConfigDocument{})), compact(R"({"Version": 1,
        "Router": {"HTTPProxy": "127.0.0.1:43100", "SOCKS5Proxy": "127.0.0.1:43101", "PACListen": "127.0.0.1:43180",
            "ProfileHTTPProxyBase": 43110, "ProfileSOCKS5Base": 43111, "ProfileUDPPortBase": 43400,
            "ProfileHostnameBase": "veranox", "TunnelListenBase": 43300},
        "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
        "Paths": {"AppSupportDir": "~/Library/Application Support/Veranox", "ConfigDir": "~/.config/veranox"},
        "Profiles": {},
        "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
            "AllowUnknownTSNet": false}})"));
}

TEST(Wire, ConfigurationNeverShowsTunnelsAndPublications)
{
    ConfigDocument document;
    document.tunnels.emplace_back("t", TunnelSettings{});
    document.publications.emplace_back("p", PublicationSettings{});
    const boost::json::object record = configRecord(document);
    EXPECT_FALSE(record.contains("Tunnels"));
    EXPECT_FALSE(record.contains("Publications"));
}

TEST(Wire, ProfileInTheConfigurationHasItsSixteenKeysInOrder)
{
    EXPECT_EQ(serialize(toJson(ProfileSettings{})), compact(R"({"DisplayName": "", "Icon": "", "Color": "",
        "Backend": "tsnet", "Hostname": "", "AuthKeyEnv": "", "ControlURL": "", "Suffixes": [], "MatchRoot": false,
        "AcceptRoutes": false, "IPRoutes": [], "StateDir": "", "Socket": "", "HTTPProxy": "", "SOCKS5Proxy": "",
        "Port": 0})"));
}

} // namespace

} // namespace veranox
