#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <boost/json/parse.hpp>
#include <gtest/gtest.h>
#include <list>
#include <thread>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::RawClient;
using test::RunningServer;

std::string errorOf(const RawClient::Answer &answer)
{
    return std::string(boost::json::parse(answer.body()).at("error").as_string());
}

TEST(ControlServer, HeaderThatIsTooLarge)
{
    ControlLimits limits;
    limits.headerBytes = 1000;
    RunningServer server(limits);
    RawClient client(server.port());
    const RawClient::Answer answer =
        client.exchange(client.request("GET", "/api/health", "X-Padding: " + std::string(2000, 'x') + "\r\n"));
    EXPECT_EQ(answer.result_int(), 431U);
    EXPECT_EQ(errorOf(answer), "The header of the request is too large.");
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(ControlServer, BodyThatIsTooLarge)
{
    ControlLimits limits;
    limits.bodyBytes = 1000;
    RunningServer server(limits);
    RawClient announced(server.port());
    announced.send(announced.request("POST", "/api/shutdown", "Content-Length: 1001\r\n"));
    EXPECT_EQ(announced.receive().result_int(), 413U) << "before a byte of it came";
    EXPECT_TRUE(announced.isClosedByServer());
    RawClient chunked(server.port());
    chunked.send(chunked.request("POST", "/api/shutdown", server.tokenLine() + "Transfer-Encoding: chunked\r\n")
        + "7d0\r\n" + std::string(2000, 'x') + "\r\n0\r\n\r\n");
    EXPECT_EQ(chunked.receive().result_int(), 413U);
    EXPECT_TRUE(chunked.isClosedByServer());
}

/// What frames a body, without end, and what comes of it.
class FramingWithoutEnd : public ::testing::TestWithParam<std::pair<std::string, std::string>> { };

TEST_P(FramingWithoutEnd, IsRefusedOnceItIsMoreThanAnyoneNeeds)
{
    ControlLimits limits;
    limits.framedBytes = 1000000;
    limits.drainBytes = 1000000;
    limits.linger = 60s; // so that the bytes alone cut it off
    RunningServer server(limits);
    for (const std::string &token : {server.tokenLine(), std::string()}) {
        RawClient client(server.port());
        client.send(client.request("POST", "/api/config", token + "Transfer-Encoding: chunked\r\n") + GetParam().first);
        int pieces = 0;
        while (pieces < 10000 && client.send(GetParam().second))
            ++pieces;
        EXPECT_LT(pieces, 1000) << "it does not take all that comes";
    }
}

TEST_P(FramingWithoutEnd, IsToldSo)
{
    RunningServer server({});
    RawClient client(server.port());
    std::string request =
        client.request("POST", "/api/config", server.tokenLine() + "Transfer-Encoding: chunked\r\n") + GetParam().first;
    while (request.size() < 12000000)
        request += GetParam().second;
    EXPECT_TRUE(client.send(request)) << "what it writes before it reads is taken";
    const RawClient::Answer answer = client.receive();
    EXPECT_EQ(answer.result_int(), 413U);
    EXPECT_EQ(errorOf(answer), "The body of the request comes with too much around it.");
}

INSTANTIATE_TEST_SUITE_P(ControlServer, FramingWithoutEnd,
    ::testing::Values(std::pair{std::string("5;a="), std::string(100000, 'x')},
        std::pair{std::string("0"), std::string(100000, '0')},
        std::pair{std::string("0\r\n"), "X-Trailer: " + std::string(99980, 'x') + "\r\n"},
        std::pair{std::string(), "1;a=" + std::string(10000, 'x') + "\r\ny\r\n"}));

TEST(ControlServer, ClientThatWritesAllBeforeItReadsLearnsWhyItIsRefused)
{
    RunningServer server({});
    const std::string much(12 * 1024 * 1024, 'x');
    const std::string length = "Content-Length: " + std::to_string(much.size()) + "\r\n";
    RawClient announced(server.port());
    EXPECT_TRUE(announced.send(announced.request("POST", "/api/config", length) + much));
    EXPECT_EQ(announced.receive().result_int(), 413U);
    RawClient stranger(server.port());
    EXPECT_TRUE(stranger.send("POST /api/config HTTP/1.1\r\nHost: evil.example\r\nContent-Length: 4000000\r\n\r\n"
        + much.substr(0, 4000000)));
    EXPECT_EQ(stranger.receive().result_int(), 421U);
    RawClient chunked(server.port());
    const std::string inChunks = "c00000\r\n" + much + "\r\n0\r\n\r\n";
    const std::string coding = "Transfer-Encoding: chunked\r\n";
    EXPECT_TRUE(chunked.send(chunked.request("POST", "/api/config", server.tokenLine() + coding) + inChunks));
    EXPECT_EQ(chunked.receive().result_int(), 413U);
    RawClient guess(server.port());
    EXPECT_TRUE(guess.send(guess.request("POST", "/api/config", coding) + inChunks));
    EXPECT_EQ(guess.receive().result_int(), 403U);
    EXPECT_TRUE(guess.isClosedByServer()) << "as the body is too large to be let pass";
}

TEST(ControlServer, ClientThatWritesOnWithoutEndIsCutOff)
{
    ControlLimits limits;
    limits.drainBytes = 1000000;
    limits.linger = 60s; // so that the bytes alone cut it off
    RunningServer server(limits);
    RawClient client(server.port());
    client.send(client.request("POST", "/api/config", "Content-Length: 1000000000\r\n"));
    const std::string piece(100000, 'x');
    int pieces = 0;
    while (pieces < 10000 && client.send(piece))
        ++pieces;
    EXPECT_LT(pieces, 1000) << "what the sockets hold besides";
}

TEST(ControlServer, RefusedClientThatSaysNothingMoreIsCutOff)
{
    ControlLimits limits;
    limits.linger = 50ms;
    RunningServer server(limits);
    RawClient client(server.port());
    client.send(client.request("POST", "/api/config", "Content-Length: 1000000000\r\n"));
    EXPECT_EQ(client.receive().result_int(), 413U);
    const auto begin = std::chrono::steady_clock::now();
    while (client.send("x") && std::chrono::steady_clock::now() - begin < 15s)
        std::this_thread::yield();
    EXPECT_FALSE(client.send("x"));
}

TEST(ControlServer, ClientThatSaysNothingIsCutOff)
{
    ControlLimits limits;
    limits.firstByte = 50ms;
    RunningServer server(limits);
    RawClient client(server.port());
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(ControlServer, ClientThatSaysNothingMoreIsCutOff)
{
    ControlLimits limits;
    limits.idle = 50ms;
    RunningServer server(limits);
    RawClient client(server.port());
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U);
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(ControlServer, RequestThatDripsIsCutOffHoweverOftenAByteComes)
{
    ControlLimits limits;
    limits.request = 100ms;
    limits.headerBytes = 1U << 30U; // so that time alone cuts it off
    RunningServer server(limits);
    RawClient client(server.port());
    const auto begin = std::chrono::steady_clock::now();
    while (client.send("x") && std::chrono::steady_clock::now() - begin < 10s)
        std::this_thread::yield();
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(ControlServer, BodyThatNeverComesIsCutOff)
{
    ControlLimits limits;
    limits.request = 100ms;
    RunningServer server(limits);
    RawClient client(server.port());
    client.send(client.request("POST", "/api/shutdown", server.tokenLine() + "Content-Length: 10\r\n") + "12345");
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(ControlServer, ClientThatNeverReadsIsCutOff)
{
    ControlLimits limits;
    limits.write = 100ms;
    RunningServer server(limits);
    RawClient client(server.port());
    const std::string many = [&] {
        std::string requests;
        for (int i = 0; i < 100; ++i)
            requests += client.request("GET", "/api/config");
        return requests;
    }();
    const auto begin = std::chrono::steady_clock::now();
    while (client.send(many) && std::chrono::steady_clock::now() - begin < 15s) { }
    EXPECT_FALSE(client.send(many)) << "the server stopped listening to it";
}

TEST(ControlServer, CrowdOfIdleConnectionsLocksNobodyOut)
{
    ControlLimits limits;
    limits.connections = 4;
    RunningServer server(limits);
    std::list<RawClient> crowd;
    for (int i = 0; i < 50; ++i)
        crowd.emplace_back(server.port());
    RawClient client(server.port());
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U);
    EXPECT_TRUE(crowd.front().isClosedByServer()) << "the one that waited longest made room";
}

} // namespace

} // namespace veranox
