#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include <algorithm>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <csignal>
#include <gmock/gmock.h>
#include <list>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using test::RawClient;
using test::ServiceProcess;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

using Arguments = std::vector<std::string>;

const Arguments demo{"gui", "serve", "--listen", "127.0.0.1:0", "--lab", "demo"};
const Arguments plain{"gui", "serve", "--listen", "127.0.0.1:0"};

class ServiceContract : public ::testing::Test {
protected:
    boost::json::value get(std::uint16_t port, const std::string &path) const
    {
        RawClient client(port);
        const RawClient::Answer answer = client.exchange(client.request("GET", path));
        EXPECT_EQ(answer.result_int(), 200U) << path;
        return boost::json::parse(answer.body());
    }
    std::string tokenHeader() const
    {
        return "X-Veranox-Token: " + home.read(".local/share/Veranox/control.token").substr(0, 64) + "\r\n";
    }

    test::TemporaryFolder home;
};

TEST_F(ServiceContract, ServesTheDemo)
{
    ServiceProcess service(home.path(), demo);
    const std::uint16_t port = service.awaitPort();
    ASSERT_NE(port, 0);
    EXPECT_EQ(get(port, "/api/profiles").as_array().size(), 5U);
    EXPECT_EQ(get(port, "/api/tunnels").as_array().size(), 6U);
    EXPECT_EQ(get(port, "/api/publications").as_array().size(), 6U);
    EXPECT_EQ(get(port, "/api/config").at("Profiles").as_object().size(), 5U);
    EXPECT_TRUE(get(port, "/api/environment").at("TailscaledAvailable").is_bool());
    EXPECT_EQ(get(port, "/api/health").at("status"), "ok");
}

TEST_F(ServiceContract, TheDemoCanBeSavedAsItIs)
{
    ServiceProcess service(home.path(), demo);
    const std::uint16_t port = service.awaitPort();
    RawClient client(port);
    const auto post = [&](const std::string &path, const boost::json::value &body) {
        const std::string text = boost::json::serialize(body);
        return client.exchange(
            client.request("POST", path, tokenHeader() + "Content-Length: " + std::to_string(text.size()) + "\r\n")
            + text);
    };
    const RawClient::Answer saved = post("/api/config?force=true", get(port, "/api/config"));
    EXPECT_EQ(saved.result_int(), 200U) << saved.body();
    for (const boost::json::value &tunnel : get(port, "/api/tunnels").as_array()) {
        boost::json::object settings;
        for (const std::string_view key : {"DisplayName", "Profile", "Mode", "Listen", "Target", "Disabled"})
            settings[key] = tunnel.at(key);
        if (tunnel.at("Mode") == "ssh")
            settings["SSH"] = {{"Bastion", tunnel.at("SSHBastion")}, {"User", tunnel.at("SSHUser")},
                {"Auth", tunnel.at("SSHAuth")}, {"IdentityFile", tunnel.at("SSHIdentity")}};
        const RawClient::Answer answer = post(
            "/api/tunnels", {{"Name", tunnel.at("Name")}, {"OriginalName", tunnel.at("Name")}, {"Tunnel", settings}});
        EXPECT_EQ(answer.result_int(), 200U) << answer.body();
    }
    for (const boost::json::value &publication : get(port, "/api/publications").as_array()) {
        boost::json::object settings;
        for (const std::string_view key : {"DisplayName", "Profile", "Target", "Reach", "Port", "TLS", "Disabled"})
            settings[key] = publication.at(key);
        const RawClient::Answer answer = post("/api/publications",
            {{"Name", publication.at("Name")}, {"OriginalName", publication.at("Name")}, {"Publication", settings}});
        EXPECT_EQ(answer.result_int(), 200U) << answer.body();
    }
}

TEST_F(ServiceContract, TheLargestConfigurationCanBeSentBack)
{
    constexpr std::size_t nearTheLimit = 4100000; // of 4 MiB
    boost::json::array suffixes;
    const std::string filler(200, 'x');
    for (std::size_t size = 0; size < nearTheLimit; size += 8 + suffixes.back().as_string().size() + 4)
        suffixes.emplace_back("." + filler.substr(0, 60) + "." + filler.substr(0, 60) + "." + filler.substr(0, 60)
            + ".s" + std::to_string(suffixes.size()) + ".ts.net");
    {
        ServiceProcess first(home.path(), plain);
        ASSERT_NE(first.awaitPort(), 0);
        first.signal(SIGTERM);
        first.awaitEnd();
    }
    const std::string place = ".config/veranox/config.json";
    boost::json::value file = boost::json::parse(home.read(place));
    file.at("Profiles") = {{"large", {{"Suffixes", suffixes}}}};
    home.write(place, boost::json::serialize(file));
    ServiceProcess service(home.path(), plain);
    RawClient client(service.awaitPort());
    const std::string config = client.exchange(client.request("GET", "/api/config")).body();
    ASSERT_GT(config.size(), 3900000U);
    const std::string length = "Content-Length: " + std::to_string(config.size()) + "\r\n";
    const RawClient::Answer saved =
        client.exchange(client.request("POST", "/api/config", tokenHeader() + length) + config);
    EXPECT_EQ(saved.result_int(), 200U) << saved.body();
    EXPECT_GT(home.read(place).size(), nearTheLimit);
}

TEST_F(ServiceContract, EveryRecordHasAllItsKeys)
{
    ServiceProcess service(home.path(), demo);
    const std::uint16_t port = service.awaitPort();
    const auto keys = [](const boost::json::value &record) {
        std::vector<std::string> names;
        for (const auto &member : record.as_object())
            names.emplace_back(member.key());
        return names;
    };
    for (const boost::json::value &profile : get(port, "/api/profiles").as_array()) {
        EXPECT_THAT(keys(profile),
            ElementsAre("name", "display_name", "icon", "color", "hostname", "backend", "suffixes", "match_root",
                "ip_routes", "state_dir", "socket", "http_proxy", "socks5_proxy", "udp_port", "status"));
        EXPECT_THAT(keys(profile.at("status")), ElementsAre("ok", "backend_state", "raw", "error", "checked_at"));
    }
    for (const boost::json::value &tunnel : get(port, "/api/tunnels").as_array())
        EXPECT_EQ(keys(tunnel).size(), 14U);
    for (const boost::json::value &publication : get(port, "/api/publications").as_array()) {
        EXPECT_EQ(keys(publication).size(), 14U);
        EXPECT_THAT(keys(publication.at("Reachability")), ElementsAre("State", "Peers", "Everyone", "Detail", "Hint"));
    }
    EXPECT_THAT(
        keys(get(port, "/api/config")), ElementsAre("Version", "Router", "Tailscale", "Paths", "Profiles", "Security"));
    EXPECT_THAT(keys(get(port, "/api/environment")), ElementsAre("TailscaledAvailable", "TailscaledBin"));
}

TEST_F(ServiceContract, WithoutALabItIsEmptyAndWritesADocumentOfDefaults)
{
    ServiceProcess service(home.path(), plain);
    const std::uint16_t port = service.awaitPort();
    EXPECT_TRUE(get(port, "/api/profiles").as_array().empty());
    const boost::json::value file = boost::json::parse(home.read(".config/veranox/config.json"));
    EXPECT_EQ(file.at("Router"), get(port, "/api/config").at("Router"));
    EXPECT_TRUE(file.at("Tunnels").as_object().empty());
}

TEST_F(ServiceContract, ProfilesWithoutAnEngineNeedAttention)
{
    {
        ServiceProcess first(home.path(), demo);
        first.awaitPort();
        first.signal(SIGTERM);
        EXPECT_EQ(first.awaitEnd(), 0);
    }
    ServiceProcess service(home.path(), plain);
    for (const boost::json::value &profile : get(service.awaitPort(), "/api/profiles").as_array()) {
        EXPECT_FALSE(profile.at("status").at("ok").as_bool());
        EXPECT_EQ(profile.at("status").at("backend_state"), "Stopped");
        EXPECT_TRUE(profile.at("status").at("error").as_string().starts_with("No network engine: "));
    }
}

TEST_F(ServiceContract, LabFromTheEnvironment)
{
    home.write("lab.json", R"({"version": 1, "tailnets": {"net": {"suffix": ".t"}},
        "profiles": {"only": {"tailnet": "net", "config": {}}}})");
    ServiceProcess service(home.path(), plain, {{"VERANOX_LAB", (home / "lab.json").string()}});
    const boost::json::value profiles = get(service.awaitPort(), "/api/profiles");
    ASSERT_EQ(profiles.as_array().size(), 1U);
    EXPECT_EQ(profiles.at(0).at("name"), "only");
    EXPECT_TRUE(profiles.at(0).at("status").at("ok").as_bool());
}

TEST_F(ServiceContract, RestartKeepsTheFileByteForByte)
{
    std::string before;
    for (int i = 0; i < 2; ++i) {
        ServiceProcess service(home.path(), demo);
        ASSERT_NE(service.awaitPort(), 0);
        service.signal(SIGTERM);
        EXPECT_EQ(service.awaitEnd(), 0);
        const std::string now = home.read(".config/veranox/config.json");
        EXPECT_TRUE(before.empty() || before == now);
        before = now;
    }
}

TEST_F(ServiceContract, TokenIsPrivateFreshAndNeeded)
{
    ServiceProcess service(home.path(), plain);
    RawClient client(service.awaitPort());
    const fs::path token = home / ".local/share/Veranox/control.token";
    EXPECT_EQ(fs::status(token).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(token.parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(client.exchange(client.request("POST", "/api/shutdown")).result_int(), 403U);
    const std::string wrong = "X-Veranox-Token: " + std::string(64, '0') + "\r\n";
    EXPECT_EQ(client.exchange(client.request("POST", "/api/shutdown", wrong)).result_int(), 403U);
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U) << "it still runs";
    EXPECT_EQ(
        client.exchange(client.request("POST", "/api/shutdown", tokenHeader())).body(), R"({"status":"stopping"})");
    EXPECT_EQ(service.awaitEnd(), 0);
}

TEST_F(ServiceContract, HostsAndOrigins)
{
    ServiceProcess service(home.path(), plain);
    const std::uint16_t port = service.awaitPort();
    const std::string ours = ":" + std::to_string(port);
    const std::pair<std::string, unsigned> table[] = {
        {"Host: 127.0.0.1" + ours, 200},
        {"Host: localhost" + ours, 200},
        {"Host: [::1]" + ours, 200},
        {"Host: evil.example" + ours, 421},
        {"Host: 127.0.0.1", 421},
        {"X-No-Host: at all", 421},
        {"Host: 127.0.0.1" + ours + "\r\nHost: evil.example", 421},
        {"Host: 127.0.0.1" + ours + "\r\nOrigin: http://127.0.0.1" + ours, 200},
        {"Host: 127.0.0.1" + ours + "\r\nOrigin: https://evil.example", 400},
        {"Host: 127.0.0.1" + ours + "\r\nOrigin: null", 400},
    };
    for (const auto &[headers, status] : table) {
        RawClient client(port);
        EXPECT_EQ(client.exchange("GET /api/health HTTP/1.1\r\n" + headers + "\r\n\r\n").result_int(), status)
            << headers;
    }
    RawClient page(port);
    const std::string origin = "Origin: http://127.0.0.1" + ours + "\r\n";
    EXPECT_EQ(page.exchange(page.request("POST", "/api/shutdown", tokenHeader() + origin)).result_int(), 400U);
}

TEST_F(ServiceContract, OversizeSlowAndManyClientsHurtNobodyElse)
{
    ServiceProcess service(home.path(), plain);
    const std::uint16_t port = service.awaitPort();
    std::list<RawClient> idle;
    for (int i = 0; i < 200; ++i)
        idle.emplace_back(port);
    RawClient slow(port);
    slow.send("POST /api/shut");
    RawClient header(port);
    EXPECT_EQ(
        header.exchange(header.request("GET", "/api/health", "X-A: " + std::string(20000, 'a') + "\r\n")).result_int(),
        431U);
    RawClient body(port);
    EXPECT_EQ(body.exchange(body.request("POST", "/api/shutdown", "Content-Length: 4194305\r\n")).result_int(), 413U);
    RawClient client(port);
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U);
}

TEST_F(ServiceContract, SignalsEndItInOrder)
{
    for (const int number : {SIGTERM, SIGINT}) {
        ServiceProcess service(home.path(), plain);
        RawClient idle(service.awaitPort());
        service.signal(number);
        EXPECT_EQ(service.awaitEnd(), 0) << number;
        EXPECT_TRUE(idle.isClosedByServer());
        EXPECT_THAT(service.output(), HasSubstr(number == SIGTERM ? "reason=SIGTERM" : "reason=SIGINT"));
        EXPECT_THAT(service.output(), HasSubstr("event_code=service_stopped"));
    }
}

TEST_F(ServiceContract, LinesCarryTheSession)
{
    ServiceProcess service(home.path(), plain, {{"VERANOX_SESSION_ID", "0f0e-session"}});
    service.awaitPort();
    service.signal(SIGTERM);
    service.awaitEnd();
    EXPECT_THAT(service.output(), HasSubstr("component=local_service session_id=0f0e-session "));
    ServiceProcess forged(home.path(), plain, {{"VERANOX_SESSION_ID", "x level=fatal"}});
    forged.awaitPort();
    forged.signal(SIGTERM);
    forged.awaitEnd();
    EXPECT_THAT(forged.output(), ::testing::Not(HasSubstr("fatal")));
}

TEST_F(ServiceContract, TakenAddressNamesItsHolderAndTouchesNothing)
{
    ServiceProcess first(home.path(), plain);
    const std::string address = "127.0.0.1:" + std::to_string(first.awaitPort());
    const std::string token = tokenHeader();
    ServiceProcess second(home.path(), {"gui", "serve", "--listen", address});
    EXPECT_EQ(second.awaitEnd(), 2);
    EXPECT_EQ(second.errorOutput(),
        "veranox: The address " + address + " is taken by veranox (process " + std::to_string(first.process())
            + "); end that program or choose another address with --listen.\n");
    EXPECT_EQ(tokenHeader(), token) << "the running service keeps its token";
}

TEST_F(ServiceContract, DamagedConfigurationIsSetAsideAndTheNextStartBeginsEmpty)
{
    fs::create_directories(home / ".config/veranox");
    home.write(".config/veranox/config.json", "{\"Version\": 1,\n");
    ServiceProcess first(home.path(), plain);
    EXPECT_EQ(first.awaitEnd(), 2);
    EXPECT_THAT(first.errorOutput(), HasSubstr("is not valid: at line 2, column 1: "));
    EXPECT_THAT(first.errorOutput(), HasSubstr("config.json.damaged-"));
    ServiceProcess second(home.path(), plain);
    EXPECT_TRUE(get(second.awaitPort(), "/api/profiles").as_array().empty());
}

TEST_F(ServiceContract, WrongInputEndsWithOneLineAndStatus2)
{
    home.write("bad.json", "{\n  \"version\": one\n}");
    home.write("file", "x");
    fs::create_directories(home / "taken/Veranox/control.token");
    fs::create_directories(home / "linked");
    fs::create_directory_symlink(home / "taken/Veranox", home / "linked/Veranox");
    const std::string listen = "--listen";
    struct Case {
        Arguments arguments;
        std::map<std::string, std::string> variables;
        std::string says;
    };
    const Case table[] = {
        {{}, {}, "--help"},
        {{"frob"}, {}, "--help"},
        {{"gui"}, {}, "--help"},
        {{"gui", "serve", "--frob"}, {}, "--frob"},
        {{"gui", "serve", "a\nb"}, {}, "a b"},
        {{"gui", "serve", listen}, {}, listen},
        {{"gui", "serve", listen, "0.0.0.0:43200"}, {}, "must be bound to loopback"},
        {{"gui", "serve", listen, "192.168.0.1:1"}, {}, "must be bound to loopback"},
        {{"gui", "serve", listen, "127.0.0.1:99999"}, {}, "must end in a port from 0 to 65535"},
        {{"gui", "serve", listen, "here"}, {}, "must be HOST:PORT"},
        {{"gui", "serve", listen, "127.0.0.1:0", "--log-level", "loud"}, {}, "--log-level"},
        {{"gui", "serve", listen, "127.0.0.1:0", "--lab", (home / "none.json").string()}, {}, "none.json"},
        {{"gui", "serve", listen, "127.0.0.1:0", "--lab", (home / "bad.json").string()}, {}, "line 2, column 14"},
        {plain, {{"VERANOX_LAB", home.path().string()}}, "no regular file"},
        {plain, {{"XDG_DATA_HOME", (home / "taken").string()}}, "control.token"},
        {plain, {{"XDG_DATA_HOME", (home / "linked").string()}}, "symbolic link"},
        {plain, {{"XDG_DATA_HOME", (home / "file").string()}}, "control.token"},
        {plain, {{"XDG_CONFIG_HOME", (home / "file").string()}}, "XDG_CONFIG_HOME"},
        {plain, {{"HOME", ""}}, "HOME"},
    };
    for (const Case &wrong : table) {
        ServiceProcess service(home.path(), wrong.arguments, wrong.variables);
        EXPECT_EQ(service.awaitEnd(), 2) << wrong.says;
        const std::string &said = service.errorOutput();
        EXPECT_THAT(said, HasSubstr(wrong.says));
        EXPECT_TRUE(said.starts_with("veranox: ")) << said;
        EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
        EXPECT_TRUE(said.ends_with(".\n")) << said;
        EXPECT_EQ(service.output(), "") << wrong.says;
    }
}

TEST_F(ServiceContract, VersionAndHelpGoToStandardOutput)
{
    ServiceProcess version(home.path(), {"--version"});
    EXPECT_EQ(version.awaitEnd(), 0);
    EXPECT_THAT(version.output(), ::testing::MatchesRegex("veranox [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    ServiceProcess help(home.path(), {"gui", "serve", "--help"});
    EXPECT_EQ(help.awaitEnd(), 0);
    EXPECT_THAT(help.output(), HasSubstr("--listen HOST:PORT"));
    EXPECT_EQ(help.errorOutput(), "");
}

} // namespace

} // namespace veranox
