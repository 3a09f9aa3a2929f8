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
    const std::string headers = "Expect: 100-continue\r\nContent-Length: 2\r\n";
    client.send(client.request("POST", "/api/feedback", server.tokenLine() + headers));
    EXPECT_EQ(client.receiveHeader().result_int(), 100U);
    client.send("{}");
    EXPECT_EQ(client.receive().result_int(), 400U);
    RawClient stranger(server.port());
    stranger.send(stranger.request("POST", "/api/feedback", headers));
    EXPECT_EQ(stranger.receive().result_int(), 403U) << "without being told to go on";
    EXPECT_TRUE(stranger.isClosedByServer()) << "as it may send the body or not";
}

TEST(ControlServer, LooksAtTheTokenBeforeTheBody)
{
    RunningServer server({});
    RawClient client(server.port());
    for (const std::string body : {"Content-Length: 4000000\r\n", "Transfer-Encoding: chunked\r\n"}) {
        client.send(client.request("POST", "/api/shutdown", body));
        EXPECT_EQ(client.receive().result_int(), 403U) << "and no byte of the body has come";
        client.send(body.starts_with("Content") ? std::string(4000000, 'x') : "3\r\nabc\r\n0\r\n\r\n");
    }
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U) << "the bodies are let pass";
}

TEST(ControlServer, BodyOfAReadIsLetPass)
{
    RunningServer server({});
    RawClient client(server.port());
    client.send(client.request("GET", "/api/health", "Content-Length: 5\r\n") + "hello");
    EXPECT_EQ(client.receive().body(), R"({"status":"ok"})");
    EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U);
}

TEST(ControlServer, BodiesWrappedInWhatItDoesNotKnowAreRefusedAndCutOff)
{
    RunningServer server({});
    for (const std::string coding : {"gzip", "identity", "gzip, chunked", "chunked, chunked", "chunked, gzip",
             "xchunked", "chunked;q=1", "", "chunked\r\nTransfer-Encoding: gzip"}) {
        RawClient client(server.port());
        client.send(client.request("GET", "/api/health", "Transfer-Encoding: " + coding + "\r\n")
            + client.request("GET", "/api/tunnels"));
        const unsigned status = client.receive().result_int();
        EXPECT_EQ(status, coding.contains("\r") ? 400U : 501U) << coding;
        EXPECT_TRUE(client.isClosedByServer()) << coding << ": what follows is no request for all that it knows";
    }
    RawClient known(server.port());
    known.send(known.request("GET", "/api/health", "Transfer-Encoding: Chunked\r\n") + "0\r\n\r\n");
    EXPECT_EQ(known.receive().result_int(), 200U);
}

TEST(ControlServer, BodiesWhoseLengthIsToldTwiceAreRefused)
{
    RunningServer server({});
    for (const std::string framing : {"Content-Length: 5\r\nContent-Length: 6\r\n", "Content-Length: 5, 6\r\n",
             "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n",
             "Transfer-Encoding: chunked\r\nContent-Length: 5\r\n", "Content-Length: +5\r\n", "Content-Length: -1\r\n",
             "Content-Length: 0x5\r\n"}) {
        RawClient client(server.port());
        client.send(client.request("POST", "/api/shutdown", server.tokenLine() + framing) + "hello");
        EXPECT_EQ(client.receive().result_int(), 400U) << framing;
        EXPECT_TRUE(client.isClosedByServer()) << framing;
    }
}

TEST(ControlServer, EveryWishToEndTheConnectionCounts)
{
    RunningServer server({});
    for (const std::string wish : {"close", "Close", "keep-alive\r\nConnection: close",
             "close\r\nConnection: keep-alive", "keep-alive, close", "x\r\nConnection: y, close"}) {
        RawClient client(server.port());
        const RawClient::Answer answer =
            client.exchange(client.request("GET", "/api/health", "Connection: " + wish + "\r\n"));
        EXPECT_EQ(answer.result_int(), 200U) << wish;
        EXPECT_FALSE(answer.keep_alive()) << wish;
        EXPECT_TRUE(client.isClosedByServer()) << wish;
    }
    RawClient old(server.port());
    const std::string host = "Host: 127.0.0.1:" + std::to_string(server.port()) + "\r\n";
    old.send("GET /api/health HTTP/1.0\r\n" + host + "Connection: keep-alive\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(old.receive().result_int(), 200U);
    EXPECT_TRUE(old.isClosedByServer());
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
