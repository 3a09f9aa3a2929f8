#include "Service/Files/ChildProcess.h"
#include "Tests/Service/Contract/ServiceContract.h"
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/json/serialize.hpp>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <list>
#include <thread>

namespace veranox {

namespace {

namespace asio = boost::asio;
namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace test::contract;
using test::RawClient;
using test::ServiceProcess;
using ::testing::HasSubstr;
using Clock = std::chrono::steady_clock;

constexpr std::size_t mebibyte = 1024 * 1024;

/// The most memory that the process has ever had, in bytes.
std::size_t mostMemory(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stoul(line.substr(6)) * 1024;
    throw std::runtime_error("the system does not tell how much memory a process has");
}

TEST_F(ServiceContract, WhatFramesARequestWithoutEndTakesNoMemory)
{
    ServiceProcess service(home.path(), plain);
    const std::uint16_t port = service.awaitPort();
    get(port, "/api/health");
    const std::size_t before = mostMemory(service.process());
    const std::string much(100000, '0');
    const std::pair<std::string, std::string> attacks[] = {{"1;a=", much}, {"0", much},
        {"0\r\n", "X-Trailer: " + much + "\r\n"}, {"0\r\n", "X: y\r\n"},
        {"", "1;a=" + much.substr(0, 9000) + "\r\nx\r\n"}};
    for (const auto &[begin, piece] : attacks)
        for (const std::string &sender : {"POST", "GET", "token"}) {
            RawClient client(port);
            const std::string token = sender == "token" ? tokenHeader() : "";
            client.send(client.request(
                            sender == "GET" ? "GET" : "POST", "/api/feedback", token + "Transfer-Encoding: chunked\r\n")
                + begin);
            std::string pieces;
            while (pieces.size() < 100000)
                pieces += piece;
            std::size_t sent = 0;
            while (sent < 200 * mebibyte && client.send(pieces))
                sent += pieces.size();
            EXPECT_LT(sent, 200 * mebibyte) << "it takes " << begin << " from " << sender << " without end";
        }
    EXPECT_LT(mostMemory(service.process()) - before, 16 * mebibyte);
    get(port, "/api/health");
}

TEST_F(ServiceContract, BodiesThatNobodyMaySendTakeNoMemory)
{
    ServiceProcess service(home.path(), plain);
    const std::uint16_t port = service.awaitPort();
    get(port, "/api/health");
    const std::size_t before = mostMemory(service.process());
    const std::string body(4 * mebibyte, 'x');
    const std::string length = "Content-Length: " + std::to_string(body.size()) + "\r\n";
    std::list<RawClient> clients;
    for (int i = 0; i < 16; ++i) {
        clients.emplace_back(port);
        RawClient &client = clients.back();
        client.send(client.request(i % 2 == 0 ? "POST" : "GET", "/api/tunnels", length) + body.substr(1));
    }
    EXPECT_LT(mostMemory(service.process()) - before, 16 * mebibyte) << "of 64 that were sent";
}

TEST_F(ServiceContract, ASecondServiceInTheSameFoldersIsToldWhoHasThem)
{
    ServiceProcess first(home.path(), plain);
    ASSERT_NE(first.awaitPort(), 0);
    const std::string token = tokenHeader();
    const std::string by =
        " is in use by veranox (process " + std::to_string(first.process()) + "); end that program, or ";
    const fs::path support = home / ".local/share/Veranox";
    const fs::path config = home / ".config/veranox";
    const std::string elsewhere = (home / "elsewhere").string();
    struct Case {
        std::map<std::string, std::string> variables;
        std::string says;
    };
    const Case table[] = {{{}, support.string() + " for control.token" + by + "set XDG_DATA_HOME to another place.\n"},
        {{{"XDG_CONFIG_HOME", elsewhere}},
            support.string() + " for control.token" + by + "set XDG_DATA_HOME to another place.\n"},
        {{{"XDG_DATA_HOME", elsewhere}},
            config.string() + " for config.json" + by + "set XDG_CONFIG_HOME to another place.\n"}};
    for (const Case &wrong : table) {
        ServiceProcess second(home.path(), plain, wrong.variables);
        EXPECT_EQ(second.awaitEnd(), 2);
        EXPECT_EQ(second.errorOutput(), "veranox: The folder " + wrong.says);
    }
    EXPECT_EQ(tokenHeader(), token) << "the first keeps its token";
    first.signal(SIGKILL);
    first.awaitEnd();
    ServiceProcess third(home.path(), plain);
    EXPECT_NE(third.awaitPort(), 0) << "a killed process holds nothing";
}

TEST_F(ServiceContract, AFolderInWhichEverybodyMayWriteIsRefused)
{
    for (const std::string folder : {".local/share/Veranox", ".config/veranox"}) {
        fs::create_directories(home / folder);
        fs::permissions(home / folder, fs::perms(0777));
        ServiceProcess service(home.path(), plain);
        EXPECT_EQ(service.awaitEnd(), 2);
        EXPECT_THAT(service.errorOutput(), HasSubstr((home / folder).string()));
        EXPECT_THAT(service.errorOutput(), HasSubstr("in which everybody may write"));
        EXPECT_TRUE(fs::is_empty(home / folder));
        fs::permissions(home / folder, fs::perms(0700));
    }
}

TEST_F(ServiceContract, LeftOversOfKilledProcessesAreClearedAtTheStart)
{
    const std::pair<std::string, std::string> leftOvers[] = {
        {".config/veranox", ".config.json.17.new"}, {".local/share/Veranox", ".control.token.4.new"}};
    for (const auto &[folder, name] : leftOvers) {
        fs::create_directories(home / folder);
        home.write(folder + "/" + name, "half");
    }
    ServiceProcess service(home.path(), plain);
    ASSERT_NE(service.awaitPort(), 0);
    for (const auto &[folder, name] : leftOvers)
        EXPECT_FALSE(fs::exists(home / folder / name)) << name;
}

TEST_F(ServiceContract, AFileThatNoSaveWouldBeLetThroughWithIsLeftAsItIs)
{
    {
        ServiceProcess first(home.path(), plain);
        ASSERT_NE(first.awaitPort(), 0);
    }
    const std::string place = ".config/veranox/config.json";
    boost::json::value file = boost::json::parse(home.read(place));
    file.at("Router").as_object()["SOCKS5Proxy"] = "0.0.0.0:43101";
    const std::string text = boost::json::serialize(file);
    home.write(place, text);
    for (int start = 0; start < 2; ++start) {
        ServiceProcess service(home.path(), plain);
        EXPECT_EQ(service.awaitEnd(), 2);
        EXPECT_THAT(service.errorOutput(), HasSubstr("Router.SOCKS5Proxy must be bound to loopback"));
        EXPECT_THAT(service.errorOutput(), HasSubstr("it was left as it is: "));
        EXPECT_EQ(home.read(place), text);
    }
}

/// A port that nobody has, for a service that cannot tell which one it got.
std::uint16_t freePort()
{
    asio::io_context context;
    return asio::ip::tcp::acceptor(context, {asio::ip::make_address("127.0.0.1"), 0}).local_endpoint().port();
}

bool answers(std::uint16_t port)
{
    try {
        RawClient client(port);
        return client.exchange(client.request("GET", "/api/health")).result_int() == 200U;
    } catch (const std::exception &) {
        return false;
    }
}

TEST_F(ServiceContract, WithoutStandardFilesItGetsThemSoThatNoConnectionTakesTheirPlace)
{
    std::string executable;
    {
        ServiceProcess any(home.path(), plain);
        any.awaitPort();
        executable = fs::read_symlink("/proc/" + std::to_string(any.process()) + "/exe");
    }
    const std::uint16_t port = freePort();
    const std::string script =
        "exec \"$0\" gui serve --listen 127.0.0.1:" + std::to_string(port) + " --log-level debug 0<&- 1>&- 2>&-";
    const ChildProcess service({"/bin/sh", "-c", script, executable}, {"HOME=" + home.path().string()});
    for (const Clock::time_point begin = Clock::now(); !answers(port) && Clock::now() - begin < 20s;)
        std::this_thread::yield();
    EXPECT_TRUE(answers(port)) << "and no line of the log stands among its answers";
    for (const int number : {0, 1, 2})
        EXPECT_EQ(
            fs::read_symlink("/proc/" + std::to_string(service.id()) + "/fd/" + std::to_string(number)), "/dev/null");
}

TEST_F(ServiceContract, EndsWithinASecondWhateverItsClientsDo)
{
    for (const bool isAsked : {false, true}) {
        ServiceProcess service(home.path(), demo);
        const std::uint16_t port = service.awaitPort();
        std::list<RawClient> clients;
        const auto connect = [&](const std::string &bytes) {
            clients.emplace_back(port);
            clients.back().send(bytes);
        };
        for (int i = 0; i < 10; ++i) {
            connect("");
            connect("GET /api/hea");
            connect(clients.back().request("POST", "/api/config", tokenHeader() + "Content-Length: 1000000\r\n") + "{");
            connect(clients.back().request("POST", "/api/config", "Content-Length: 1000000\r\n"));
            connect(clients.back().request("GET", "/api/reports/path?target=silent.lab.ts.net"));
        }
        std::string many;
        for (int i = 0; i < 500; ++i)
            many += clients.back().request("GET", "/api/config");
        connect(many);
        const Clock::time_point begin = Clock::now();
        if (isAsked) {
            RawClient client(port);
            EXPECT_EQ(client.exchange(client.request("POST", "/api/shutdown", tokenHeader())).result_int(), 200U);
        } else {
            service.signal(SIGTERM);
        }
        EXPECT_EQ(service.awaitEnd(), 0);
        EXPECT_LT(Clock::now() - begin, 1s);
        EXPECT_THAT(service.output(), HasSubstr("event_code=service_stopping"));
    }
}

} // namespace

} // namespace veranox
