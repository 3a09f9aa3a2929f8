#include "Tests/API/ApiClientTest.h"
#include "Tests/Support/PeakMemory.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

// What a broken or foreign service does ends in one of the stated failures, within the time limit, in bounded memory,
// and without holding up the main thread.
class HostileService : public ApiClientTest {
protected:
    static constexpr qint64 gibibyte = 1024 * 1024 * 1024;
    static constexpr qint64 mebibyte = 1024 * 1024;
    static constexpr qint64 longestPause = 50; // milliseconds

    void SetUp() override { peak.begin(); }
    void TearDown() override
    {
        EXPECT_LT(heartbeat.longestPause(), longestPause);
        if (PeakMemory::isMeaningful)
            EXPECT_LT(peak.growth(), 100 * mebibyte);
        EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == server.received().size(); }));
    }

    Ending askProfiles(const Behaviour &behaviour)
    {
        server.expect("GET /api/profiles", behaviour);
        return complete(client.fetchProfiles()).ending;
    }
    static QByteArray answer(const QByteArray &body)
    {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    // What the transport alone, without a decoder, makes of a body of this size: as many bytes, or the negative
    // failure.
    static constexpr qint64 tooLarge = -1;
    static constexpr qint64 unreachable = -2;
    qint64 sizeOfFlood(hostile::Framing framing, qint64 size)
    {
        server.expect("GET /", hostile::flood(framing, size, std::make_shared<std::atomic<qint64>>(0)));
        const auto result = std::make_shared<std::atomic<qint64>>();
        const auto take = [result](const VeranoxLoopbackTransport::Result &r) {
            if (r)
                *result = r->body.size();
            else
                *result = r.error() == VeranoxTransportFailure::tooLarge ? tooLarge : unreachable;
        };
        VeranoxLoopbackTransport transport(server.url());
        transport.send(
            {.method = "GET",
                .target = "/",
                .headers = {{"X-Veranox-Session-ID", "s"}, {"X-Correlation-ID", "c"}, {"X-Veranox-Attempt", "1"}}},
            {}, take);
        EXPECT_TRUE(waitUntil([&] { return *result != 0; }));
        return *result;
    }

    const std::shared_ptr<std::atomic<qint64>> sent = std::make_shared<std::atomic<qint64>>(0);
    PeakMemory peak;
};

TEST_F(HostileService, RefusesTheConnection)
{
    VeranoxAPIClient lonely(world.queue, QUrl(u"http://127.0.0.1:1"_s), session, identity(), tokenPath());
    EXPECT_EQ(complete(lonely.fetchTunnels()).ending, Ending::unavailable);
    EXPECT_EQ(complete(lonely.shutdown()).ending, Ending::unavailable);
}

TEST_F(HostileService, Hangs)
{
    server.expect("GET /api/profiles", hostile::hang());
    const auto outcome = begin(client.fetchProfiles());
    ASSERT_TRUE(waitForRequests(1));
    world.run(12s - 1ns);
    EXPECT_FALSE(outcome->ended());
    world.run(1ns);
    world.run();
    EXPECT_EQ(outcome->ending, Ending::unavailable);
}

// What comes must be right as far as it goes: a client may give a wrong answer up as soon as it sees that.
TEST_F(HostileService, SendsAByteASecond)
{
    const QByteArray statusLine = "HTTP/1.1 200 OK\r\n";
    const QByteArray header = statusLine + "X-Slow: and slower\r\nContent-Length: 99\r\n\r\n";
    for (const qsizetype atOnce : {qsizetype(0), statusLine.size(), header.size()}) {
        const auto gate = std::make_shared<Gate>();
        server.expect("GET /api/profiles", hostile::drip(header + QByteArray(99, ' '), atOnce, gate, sent));
        const auto requestsBefore = server.received().size();
        const auto outcome = begin(client.fetchProfiles());
        ASSERT_TRUE(waitForRequests(requestsBefore + 1));
        for (int second = 0; second < 12; ++second) {
            EXPECT_FALSE(outcome->ended()) << second << " after " << atOnce;
            gate->open();
            ASSERT_TRUE(waitUntil([&] { return *sent == atOnce + second + 1; }));
            // An exchange in the same thread: once it is through, that byte has been taken as well.
            server.expect("GET /api/health", reply(200, "{}"));
            EXPECT_EQ(complete(client.healthCheck()).value, true);
            world.run(1s);
        }
        world.run();
        EXPECT_EQ(outcome->ending, Ending::unavailable);
        EXPECT_TRUE(waitUntil([&] { // the connection is gone: what it still sends meets nobody
            gate->open();
            return server.connectionsClosed() == server.received().size();
        }));
    }
}

TEST_F(HostileService, ClosesAnywhere)
{
    const QByteArray whole = answer(R"([{"name":"a"}])");
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_EQ(askProfiles(hostile::sendRaw(whole.left(length))), Ending::unavailable) << length;
    EXPECT_EQ(askProfiles(hostile::sendRaw(whole)), Ending::good);
}

TEST_F(HostileService, AnnouncesAGibibyte)
{
    EXPECT_EQ(askProfiles(hostile::flood(hostile::Framing::contentLength, gibibyte, sent)), Ending::badResponse);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 1; }));
    EXPECT_LT(*sent, 16 * mebibyte); // what the sockets hold: it was refused at its header
}

TEST_F(HostileService, SendsAGibibyteInChunks)
{
    EXPECT_EQ(askProfiles(hostile::flood(hostile::Framing::chunked, gibibyte, sent)), Ending::badResponse);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 1; }));
    EXPECT_LT(*sent, 96 * mebibyte);
}

TEST_F(HostileService, SendsAGibibyteWithoutALength)
{
    EXPECT_EQ(askProfiles(hostile::flood(hostile::Framing::untilClose, gibibyte, sent)), Ending::badResponse);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 1; }));
    EXPECT_LT(*sent, 96 * mebibyte);
}

TEST_F(HostileService, SendsAGibibyteWithAFailureOrAsHealth)
{
    server.expect("POST /api/shutdown", [this](ServerConnection &connection) {
        connection.send("HTTP/1.1 403 No\r\n\r\n");
        hostile::flood(hostile::Framing::untilClose, gibibyte, sent)(connection);
    });
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::badResponse); // no 403 either: nothing is sent twice
    server.expect("GET /api/health", hostile::flood(hostile::Framing::contentLength, gibibyte, sent));
    EXPECT_EQ(complete(client.healthCheck()).value, false);
}

TEST_F(HostileService, HeadersHaveABound)
{
    EXPECT_EQ(askProfiles(hostile::endlessHeaders(sent)), Ending::badResponse);
    EXPECT_EQ(askProfiles(hostile::endlessHeaderLine(sent)), Ending::badResponse);
    EXPECT_EQ(askProfiles(hostile::endlessChunkExtension(sent)), Ending::badResponse);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 3; }));
    EXPECT_LT(*sent, 48 * mebibyte);
    const QByteArray large = "X-Large: " + QByteArray(60 * 1024, 'x') + "\r\n";
    EXPECT_EQ(askProfiles(reply(200, "[]", large)), Ending::good);
}

TEST_F(HostileService, SendsInterimAnswersWithoutEnd)
{
    server.expect("GET /api/profiles", hostile::endlessInterimAnswers(sent));
    const auto outcome = begin(client.fetchProfiles());
    ASSERT_TRUE(waitUntil([&] { return *sent > 4 * mebibyte; }));
    EXPECT_FALSE(outcome->ended());
    server.expect("GET /api/tunnels", reply(200, "[]")); // and others are served meanwhile
    EXPECT_EQ(complete(client.fetchTunnels()).ending, Ending::good);
    world.run(12s);
    world.run();
    EXPECT_EQ(outcome->ending, Ending::unavailable);
}

TEST_F(HostileService, SpeaksNoHTTP)
{
    for (const QByteArray text : {"\r\n\r\n", "hello\r\n\r\n", "HTTP/9.9 200 OK\r\n\r\n", "HTTP/1.1 2x0 OK\r\n\r\n",
             "HTTP/1.1 20 OK\r\n\r\n", "HTTP/1.1 2000 OK\r\n\r\n", "HTTP/1.1\r\n\r\n", "GET / HTTP/1.1\r\n\r\n",
             "SSH-2.0-OpenSSH_9.2p1\r\n", "HTTP/1.1 200 OK\r\nno colon\r\n\r\n", "HTTP/1.1 200 OK\r\n: x\r\n\r\n",
             "HTTP/1.1 200 OK\r\nA B: x\r\n\r\n", "\x16\x03\x01\x02", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"})
        EXPECT_EQ(askProfiles(hostile::sendRaw(text)), Ending::unavailable) << text.toStdString();
    EXPECT_EQ(askProfiles(hostile::sendRaw(QByteArray(200'000, '\0'))), Ending::unavailable);
}

TEST_F(HostileService, SendsAWrongLength)
{
    const auto withLength = [](const QByteArray &length) {
        return hostile::sendRaw("HTTP/1.1 200 OK\r\nContent-Length: " + length + "\r\n\r\n[{\"name\":\"a\"}]");
    };
    EXPECT_EQ(askProfiles(withLength("15")), Ending::unavailable); // one too many
    EXPECT_EQ(askProfiles(withLength("13")), Ending::undecodable); // one too few
    EXPECT_EQ(askProfiles(withLength("0")), Ending::undecodable);
    for (const QByteArray length : {"-1", "x", "1x", "99999999999999999999999", "14\r\nContent-Length: 15"})
        EXPECT_EQ(askProfiles(withLength(length)), Ending::unavailable) << length.toStdString();
    EXPECT_EQ(askProfiles(withLength("18446744073709551615")), Ending::badResponse);
}

TEST_F(HostileService, SendsChunkedRubbish)
{
    const auto chunked = [](const QByteArray &body) {
        return hostile::sendRaw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + body);
    };
    for (const QByteArray body : {"x\r\n", "-1\r\n[]\r\n", "2\r\n[]", "2\r\n[]xx0\r\n\r\n", "2\r\n[]\r\n", "\r\n\r\n",
             "ffffffffffffffffff\r\n[]", "2\n[]\n0\n\n", "2\r\n[]\r\n0\r\nno colon\r\n\r\n"})
        EXPECT_EQ(askProfiles(chunked(body)), Ending::unavailable) << body.toStdString();
    EXPECT_EQ(askProfiles(chunked("7fffffffffffffff\r\n[]")), Ending::badResponse);
    EXPECT_EQ(askProfiles(chunked("2;a=b\r\n[]\r\n0\r\nX-Trailer: t\r\n\r\n")), Ending::good);
}

TEST_F(HostileService, SendsWrongJSON)
{
    for (const QByteArray body : {"", "null", "{}", "3", "[3]", R"([{"name":3}])", R"([{"status":[]}])", "[{}", "nul",
             "[\"\xff\xfe\"]", "[{\"name\":\"\xc3\"}]", "\xef\xbb\xbf", "[]]"})
        EXPECT_EQ(askProfiles(reply(200, body)), Ending::undecodable) << body.toStdString();
}

TEST_F(HostileService, SendsDeepNesting)
{
    EXPECT_EQ(askProfiles(reply(200, QByteArray(4 * mebibyte, '['))), Ending::undecodable);
    EXPECT_EQ(askProfiles(reply(200, QByteArray("{\"a\":").repeated(mebibyte))), Ending::undecodable);
    EXPECT_EQ(askProfiles(reply(500, QByteArray(4 * mebibyte, '['))), Ending::badResponse);
}

TEST_F(HostileService, SendsAListOfMany)
{
    server.expect("GET /api/profiles", reply(200, '[' + QByteArray("{},").repeated(20'000) + "{}]"));
    const auto outcome = complete(client.fetchProfiles());
    ASSERT_EQ(outcome.ending, Ending::good);
    EXPECT_EQ(outcome.value->size(), 20'001);
}

TEST_F(HostileService, TheLargestAnswerIsTakenAndNoByteMore)
{
    const auto limit = VeranoxLoopbackTransport::maximumBodySize;
    for (const auto framing :
        {hostile::Framing::contentLength, hostile::Framing::chunked, hostile::Framing::untilClose}) {
        EXPECT_EQ(sizeOfFlood(framing, limit), limit);
        EXPECT_EQ(sizeOfFlood(framing, limit + 1), tooLarge);
    }
}

TEST_F(HostileService, ManyAtOnce)
{
    constexpr int calls = 100;
    QList<std::shared_ptr<Outcome<QList<VeranoxTunnel>>>> outcomes;
    for (int i = 0; i < calls; ++i) {
        server.expect("GET /api/tunnels", i % 2 ? hostile::hang() : reply(200, "[]"));
        outcomes.append(begin(client.fetchTunnels()));
    }
    ASSERT_TRUE(waitForRequests(calls));
    const auto count = [&](Ending ending) {
        return std::ranges::count_if(outcomes, [&](const auto &o) { return o->ending == ending; });
    };
    ASSERT_TRUE(waitUntil([&] { return count(Ending::good) == calls / 2; }));
    world.run(12s);
    world.run();
    EXPECT_EQ(count(Ending::unavailable), calls / 2);
}
