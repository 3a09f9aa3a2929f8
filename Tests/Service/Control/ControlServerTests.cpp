#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <boost/json/parse.hpp>
#include <gmock/gmock.h>
#include <thread>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::RawClient;
using test::RunningServer;
using ::testing::HasSubstr;

TEST(ControlServer, AnswersSeveralRequestsOnOneConnection)
{
    RunningServer server({});
    RawClient client(server.port());
    for (int i = 0; i < 3; ++i) {
        const RawClient::Answer answer = client.exchange(client.request("GET", "/api/health"));
        EXPECT_EQ(answer.result_int(), 200U);
        EXPECT_EQ(answer.body(), R"({"status":"ok"})");
    }
}

TEST(ControlServer, AnswersRequestsThatArriveTogetherInOrder)
{
    RunningServer server({});
    RawClient client(server.port());
    client.send(
        client.request("GET", "/api/health") + client.request("GET", "/none") + client.request("GET", "/api/tunnels"));
    EXPECT_EQ(client.receive().result_int(), 200U);
    EXPECT_EQ(client.receive().result_int(), 404U);
    EXPECT_EQ(client.receive().body(), "[]");
}

TEST(ControlServer, AnswersForbidEveryUseByAPage)
{
    RunningServer server({});
    RawClient client(server.port());
    for (const std::string path : {"/api/health", "/none"}) {
        const RawClient::Answer answer = client.exchange(client.request("GET", path));
        EXPECT_EQ(answer["Content-Type"], "application/json");
        EXPECT_EQ(answer["X-Content-Type-Options"], "nosniff");
        EXPECT_EQ(answer["Cross-Origin-Resource-Policy"], "same-origin");
        EXPECT_EQ(answer["Cache-Control"], "no-store");
        for (const auto &field : answer)
            EXPECT_FALSE(field.name_string().starts_with("Access-Control-")) << field.name_string();
    }
}

TEST(ControlServer, HeadHasTheHeaderAlone)
{
    RunningServer server({});
    RawClient client(server.port());
    client.send(client.request("HEAD", "/api/health"));
    const RawClient::Answer head = client.receiveHeader();
    EXPECT_EQ(head.result_int(), 200U);
    EXPECT_EQ(head["Content-Length"], "15");
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).body(), R"({"status":"ok"})");
}

TEST(ControlServer, BodiesOfRefusedWritesAreReadAndTheConnectionGoesOn)
{
    RunningServer server({});
    RawClient client(server.port());
    const RawClient::Answer refused =
        client.exchange(client.request("POST", "/api/shutdown", "Content-Length: 5\r\n") + "hello");
    EXPECT_EQ(refused.result_int(), 403U);
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U);
    client.send(client.request("POST", "/api/shutdown", "Transfer-Encoding: chunked\r\n") + "3\r\nabc\r\n0\r\n\r\n");
    EXPECT_EQ(client.receive().result_int(), 403U);
}

TEST(ControlServer, TellsAClientThatAsksToGoOn)
{
    RunningServer server({});
    RawClient client(server.port());
    client.send(client.request("POST", "/api/environment", "Expect: 100-continue\r\nContent-Length: 2\r\n"));
    EXPECT_EQ(client.receiveHeader().result_int(), 100U);
    client.send("{}");
    EXPECT_EQ(client.receive().result_int(), 405U);
}

TEST(ControlServer, StrangersAreToldAndCutOffBeforeTheirBody)
{
    RunningServer server({});
    RawClient client(server.port());
    client.send("POST /api/shutdown HTTP/1.1\r\nHost: evil.example\r\nContent-Length: 1000000\r\n\r\n");
    EXPECT_EQ(client.receive().result_int(), 421U);
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(ControlServer, WhatIsNoHttpIsRefusedAndCutOff)
{
    RunningServer server({});
    for (const std::string_view bytes :
        {"hello there\r\n\r\n", "GET /\r\n\r\n", "GET / HTTP/9.9\r\n\r\n", "GET / HTTP/1.1\r\nno colon here\r\n\r\n",
            "GET / HTTP/1.1\r\nContent-Length: x\r\n\r\n", "\x16\x03\x01\x02\r\n\r\n"}) {
        RawClient client(server.port());
        client.send(bytes);
        EXPECT_EQ(client.receive().result_int(), 400U) << bytes;
        EXPECT_TRUE(client.isClosedByServer()) << bytes;
    }
}

TEST(ControlServer, ShutdownAnswersFirstAndThenEnds)
{
    RunningServer server({});
    RawClient idle(server.port());
    RawClient client(server.port());
    const RawClient::Answer answer = client.exchange(client.request("POST", "/api/shutdown", server.tokenLine()));
    EXPECT_EQ(answer.result_int(), 200U);
    EXPECT_TRUE(boost::json::parse(answer.body()).at("status").is_string());
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_TRUE(idle.isClosedByServer());
    server.awaitEnd();
}

TEST(ControlServer, EndsThoughAClientDoesNotReadItsAnswer)
{
    ControlLimits limits;
    limits.stop = 50ms;
    RunningServer server(limits);
    RawClient client(server.port());
    std::string requests;
    for (int i = 0; i < 20000; ++i)
        requests += client.request("GET", "/api/config");
    std::thread sender([&] { client.send(requests); });
    RawClient other(server.port());
    EXPECT_EQ(other.exchange(other.request("GET", "/api/health")).result_int(), 200U);
    server.end();
    sender.join();
}

TEST(ControlServer, LogsRefusalsAndWritesButNotReads)
{
    RunningServer server({}, LogLevel::info);
    {
        RawClient client(server.port());
        client.exchange(client.request("GET", "/api/health", "X-Correlation-ID: quiet\r\n"));
        client.exchange(client.request("POST", "/api/shutdown?x=secret",
            "X-Correlation-ID: c-1\r\nX-Veranox-Attempt: 2\r\nX-Veranox-Token: wrong\r\n"));
        client.exchange(client.request("GET", "/a%20b\"level=fatal", "X-Correlation-ID: bad id\r\n"));
        client.exchange(client.request("POST", "/api/shutdown", server.tokenLine()));
    }
    server.awaitEnd();
    ASSERT_EQ(server.lines().size(), 3U);
    EXPECT_THAT(server.lines()[0],
        HasSubstr(R"(level=warn event_code=control_request component=local_service )"
                  R"(operation="POST /api/shutdown" outcome=refused http_status=403 duration_ms=)"));
    EXPECT_THAT(server.lines()[0], HasSubstr(" correlation_id=c-1 attempt=2"));
    EXPECT_THAT(server.lines()[0], ::testing::Not(HasSubstr("secret")));
    EXPECT_THAT(server.lines()[1], HasSubstr("operation=\"GET /a%20b'level:fatal\" outcome=refused http_status=404"));
    EXPECT_THAT(server.lines()[1], ::testing::Not(HasSubstr("correlation_id")));
    EXPECT_THAT(server.lines()[2], HasSubstr("level=info"));
    EXPECT_THAT(server.lines()[2], HasSubstr("outcome=ok http_status=200"));
}

TEST(ControlServer, ClientThatAsksNonsenseWithoutEndDoesNotDrownTheLog)
{
    RunningServer server({}, LogLevel::info);
    RawClient client(server.port());
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(client.exchange(client.request("GET", "/none")).result_int(), 404U);
    server.end();
    EXPECT_GE(server.lines().size(), 20U);
    EXPECT_LE(server.lines().size(), 100U);
}

} // namespace

} // namespace veranox
