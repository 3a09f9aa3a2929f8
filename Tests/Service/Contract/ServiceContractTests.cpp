#include "Tests/Service/Contract/ServiceContract.h"
#include <boost/json/serialize.hpp>
#include <csignal>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace test::contract;
using test::RawClient;
using test::ServiceProcess;
using ::testing::ElementsAre;

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

} // namespace

} // namespace veranox
