#include "Tests/API/ApiClientTest.h"
#include <QUuid>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {
const QByteArray emptyConfig = "{}";
const QByteArray twoProfiles = R"([{"name":"a"},{"name":"b","display_name":"B"}])";
} // namespace

using ApiReads = ApiClientTest;

TEST_F(ApiReads, EachReadHasItsPathAndGivesItsRecords)
{
    server.expect("GET /api/profiles", reply(200, twoProfiles));
    server.expect("GET /api/environment", reply(200, R"({"TailscaledAvailable":true,"TailscaledBin":"/bin/t"})"));
    server.expect("GET /api/tunnels", reply(200, R"([{"Name":"t"}])"));
    server.expect("GET /api/publications", reply(200, R"([{"Name":"p"}])"));

    const auto profiles = complete(client.fetchProfiles());
    ASSERT_EQ(profiles.ending, Ending::good) << profiles.text.toStdString();
    ASSERT_EQ(profiles.value->size(), 2);
    EXPECT_EQ(profiles.value->at(0).displayName, u"a");
    EXPECT_EQ(profiles.value->at(1).displayName, u"B");

    const auto environment = complete(client.fetchEnvironment());
    ASSERT_EQ(environment.ending, Ending::good) << environment.text.toStdString();
    EXPECT_TRUE(environment.value->tailscaledAvailable);
    EXPECT_EQ(environment.value->tailscaledBin, u"/bin/t");

    const auto tunnels = complete(client.fetchTunnels());
    ASSERT_EQ(tunnels.ending, Ending::good) << tunnels.text.toStdString();
    EXPECT_EQ(tunnels.value->size(), 1);

    const auto publications = complete(client.fetchPublications());
    ASSERT_EQ(publications.ending, Ending::good) << publications.text.toStdString();
    EXPECT_EQ(publications.value->size(), 1);
}

TEST_F(ApiReads, AReadCarriesSessionCorrelationAndAttemptButNoTokenAndNoContentType)
{
    writeToken("secret");
    server.expect("POST /api/shutdown", reply(200, R"({"status":"stopping"})"));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::good); // the client has the token from here on
    server.expect("GET /api/profiles", reply(200, "[]"));
    EXPECT_EQ(complete(client.fetchProfiles()).ending, Ending::good);
    const auto headers = server.received().at(1).headers;
    EXPECT_EQ(headers.value("x-veranox-session-id"), session.sessionID.toUtf8());
    EXPECT_EQ(headers.value("x-veranox-attempt"), "1");
    EXPECT_FALSE(headers.contains("x-veranox-token"));
    EXPECT_FALSE(headers.contains("content-type"));
    EXPECT_EQ(headers.value("host"), server.url().authority().toLatin1());
    EXPECT_EQ(headers.value("connection"), "close");
    EXPECT_EQ(headers.value("accept"), "application/json");
    const QByteArray correlation = headers.value("x-correlation-id");
    EXPECT_EQ(QUuid::fromString(QString::fromUtf8(correlation)).toByteArray(QUuid::WithoutBraces), correlation);
}

TEST_F(ApiReads, RequestsWithoutABoundCorrelationHaveOneEach)
{
    server.expect("GET /api/profiles", reply(200, "[]"));
    server.expect("GET /api/profiles", reply(200, "[]"));
    complete(client.fetchProfiles());
    complete(client.fetchProfiles());
    const auto received = server.received();
    EXPECT_NE(received.at(0).headers.value("x-correlation-id"), received.at(1).headers.value("x-correlation-id"));
}

TEST_F(ApiReads, TheBoundCorrelationGoesWithEveryRequest)
{
    server.expect("GET /api/profiles", reply(200, "[]"));
    server.expect("GET /api/config", reply(200, emptyConfig));
    server.expect("GET /api/health", reply(200, {}));
    const jobs::AmbientScope scope(u"7f-refresh"_s);
    complete(client.fetchProfiles());
    complete(client.fetchConfig());
    complete(client.healthCheck());
    for (const auto &request : server.received())
        EXPECT_EQ(request.headers.value("x-correlation-id"), "7f-refresh");
    EXPECT_EQ(server.received().size(), 3);
}

TEST_F(ApiReads, ARefusedReadIsSentOnce)
{
    server.expect("GET /api/profiles", reply(403, R"({"error":"No entry.","code":7})"));
    const auto refused = complete(client.fetchProfiles());
    EXPECT_EQ(refused.ending, Ending::refused);
    EXPECT_EQ(refused.text, u"No entry.");
    EXPECT_EQ(refused.status, 403);
    server.expect("GET /api/profiles", reply(403, "no"));
    EXPECT_EQ(complete(client.fetchProfiles()).ending, Ending::badResponse);
    EXPECT_EQ(server.received().size(), 2);
}

TEST_F(ApiReads, ARefusalsTextSurvivesWhateverStandsBesideIt)
{
    for (const QByteArray &beside : {"1e999", "99999999999999999999999", "[{\"a\":-1e999}]", "{\"error\":7}"}) {
        server.expect("GET /api/profiles", reply(409, R"({"code":)" + beside + R"(,"error":"No entry."})"));
        const auto refused = complete(client.fetchProfiles());
        EXPECT_EQ(refused.ending, Ending::refused) << beside.toStdString();
        EXPECT_EQ(refused.text, u"No entry.");
    }
}

TEST_F(ApiReads, AFailureWithoutAReasonIsABadResponse)
{
    for (const QByteArray body : {"", "{}", "[]", "text", R"({"error":3})", R"({"error":null})", R"({"Error":"x"})"}) {
        server.expect("GET /api/tunnels", reply(500, body));
        EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::badResponse) << body.toStdString();
    }
}

TEST_F(ApiReads, EveryStatusButThe2xxIsAFailure)
{
    for (const int status : {199, 300, 301, 304, 400, 401, 404, 500, 503}) {
        server.expect("GET /api/tunnels", [status](ServerConnection &connection) {
            connection.send("HTTP/1.1 " + QByteArray::number(status) + " Text\r\nLocation: /api/profiles\r\n\r\n");
        });
        const auto ending = complete(client.fetchTunnels()).ending;
        // after an interim answer the final one is awaited, and never comes
        EXPECT_EQ(ending, status < 200 ? Ending::unavailable : Ending::badResponse) << status;
    }
    for (const int status : {200, 201, 299}) {
        server.expect("GET /api/tunnels", reply(status, "[]"));
        EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::good) << status;
    }
}

TEST_F(ApiReads, AnInterimAnswerIsPassedOver)
{
    server.expect("GET /api/tunnels",
        hostile::sendRaw("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: <a>\r\n\r\n"
                         "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n[]"));
    EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::good);
}

TEST_F(ApiReads, TextsOfTheFailures)
{
    EXPECT_EQ(VeranoxAPIFailure::unavailable().localizedDescription(), u"Veranox's local service is unavailable.");
    EXPECT_EQ(VeranoxAPIFailure::refused(u"As sent"_s, 409).localizedDescription(), u"As sent");
    EXPECT_EQ(VeranoxAPIFailure::badResponse().localizedDescription(),
        u"Veranox's local service gave an answer that could not be understood.");
    EXPECT_EQ(VeranoxAPIFailure::cancelled().localizedDescription(), u"The request was cancelled.");
    server.expect("GET /api/profiles", reply(200, R"([{"name":3}])"));
    EXPECT_EQ(complete(client.fetchProfiles()).text,
        u"The answer of Veranox's local service could not be read: expected text at [0].name, found the number 3.");
}

TEST_F(ApiReads, NoProxyOfTheEnvironmentIsAsked)
{
    const QByteArrayList variables{"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"};
    for (const auto &variable : variables)
        qputenv(variable.constData(), "http://127.0.0.1:1");
    server.expect("GET /api/profiles", reply(200, "[]"));
    EXPECT_EQ(complete(client.fetchProfiles()).ending, Ending::good);
    for (const auto &variable : variables)
        qunsetenv(variable.constData());
}

TEST_F(ApiReads, NothingIsKeptOrFollowedOrUnpacked)
{
    server.expect(
        "GET /api/profiles", reply(200, "[]", "Set-Cookie: a=b\r\nETag: \"1\"\r\nCache-Control: max-age=9999\r\n"));
    server.expect("GET /api/profiles", reply(302, {}, "Location: /api/tunnels\r\n"));
    server.expect("GET /api/profiles", reply(200, "\x1f\x8b\x08", "Content-Encoding: gzip\r\n"));
    EXPECT_EQ(complete(client.fetchProfiles()).ending, Ending::good);
    EXPECT_EQ(complete(client.fetchProfiles()).ending, Ending::badResponse);
    EXPECT_EQ(complete(client.fetchProfiles()).ending, Ending::undecodable);
    EXPECT_EQ(server.received().size(), 3); // the server also fails the test for a cookie or a condition
}

TEST_F(ApiReads, AnAnswerMayComeInChunksOrEndWithTheConnection)
{
    server.expect("GET /api/tunnels",
        hostile::sendRaw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\n[\r\n1\r\n]\r\n0\r\n\r\n"));
    server.expect("GET /api/tunnels", hostile::sendRaw("HTTP/1.0 200 OK\r\n\r\n[]"));
    EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::good);
    EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::good);
}

TEST_F(ApiReads, AServiceThatClosesKeptConnectionsDisturbsNoLaterRequest)
{
    for (int i = 0; i < 3; ++i) {
        server.expect("GET /api/tunnels", reply(200, "[]", "Connection: keep-alive\r\n"));
        EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::good);
        EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == i + 1; }));
    }
}

TEST_F(ApiReads, ConcurrentReadsRunSideBySide)
{
    const auto gate = std::make_shared<Gate>();
    for (const QByteArray path : {"profiles", "config", "tunnels", "publications"})
        server.expect("GET /api/" + path, replyAfter(gate, 200, path == "config" ? "{}" : "[]"));
    const auto profiles = begin(client.fetchProfiles());
    const auto config = begin(client.fetchConfig());
    const auto tunnels = begin(client.fetchTunnels());
    const auto publications = begin(client.fetchPublications());
    ASSERT_TRUE(waitForRequests(4)); // all are there before one is answered
    gate->open(4);
    EXPECT_TRUE(
        waitUntil([&] { return profiles->ended() && config->ended() && tunnels->ended() && publications->ended(); }));
    EXPECT_EQ(profiles->ending, Ending::good);
    EXPECT_EQ(config->ending, Ending::good);
    EXPECT_EQ(tunnels->ending, Ending::good);
    EXPECT_EQ(publications->ending, Ending::good);
}

using ApiHealth = ApiClientTest;

TEST_F(ApiHealth, IsTheStatusAlone)
{
    for (const int status : {200, 204, 299}) {
        server.expect("GET /api/health", reply(status, status == 204 ? "" : "no JSON"));
        EXPECT_EQ(complete(client.healthCheck()).value, true) << status;
    }
    for (const int status : {300, 302, 403, 404, 500}) {
        server.expect("GET /api/health", reply(status, R"({"error":"x"})"));
        EXPECT_EQ(complete(client.healthCheck()).value, false) << status;
    }
    for (const auto &request : server.received())
        EXPECT_EQ(request.headers.value("x-veranox-attempt"), "1");
    EXPECT_EQ(server.received().size(), 8);
}

TEST_F(ApiHealth, IsFalseWhenNobodyListens)
{
    VeranoxAPIClient lonely(world.queue, QUrl(u"http://127.0.0.1:1"_s), session, identity(), tokenPath());
    EXPECT_EQ(complete(lonely.healthCheck()).value, false);
    EXPECT_EQ(complete(lonely.fetchProfiles()).ending, Ending::unavailable);
}

TEST_F(ApiHealth, IsFalseAfterTwoSeconds)
{
    server.expect("GET /api/health", hostile::hang());
    const auto health = begin(client.healthCheck());
    ASSERT_TRUE(waitForRequests(1));
    world.run(1999ms);
    EXPECT_FALSE(health->ended());
    world.run(1ms);
    world.run();
    EXPECT_EQ(health->value, false);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 1; }));
}
