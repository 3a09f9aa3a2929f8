#include "Tests/Service/Contract/ServiceContract.h"
#include <filesystem>
#include <gtest/gtest.h>
#include <list>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using namespace test::contract;
using test::RawClient;
using test::ServiceProcess;

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

} // namespace

} // namespace veranox
