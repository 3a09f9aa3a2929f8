#include "Tests/API/ApiClientTest.h"
#include <QDir>
#include <sys/stat.h>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {
const QByteArray stopping = R"({"status":"stopping"})";
const QByteArray refusal = R"({"error":"wrong token"})";
} // namespace

using ApiWrites = ApiClientTest;

TEST(ControlToken, LiesInTheUsersDataFolder)
{
    const QTemporaryDir home;
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    const bool wasSet = qEnvironmentVariableIsSet("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    EXPECT_EQ(defaultControlTokenPath(), home.filePath(u"Veranox/control.token"_s));
    EXPECT_TRUE(QDir(home.path()).isEmpty()) << "asking creates nothing";
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(defaultControlTokenPath(), QDir::homePath() + u"/.local/share/Veranox/control.token"_s);
    if (wasSet)
        qputenv("XDG_DATA_HOME", before);
}

TEST_F(ApiWrites, AWriteCarriesTheTrimmedTokenAndNoContentTypeWithoutABody)
{
    writeToken(" \t\r\n tök en \n");
    server.expect("POST /api/shutdown", reply(200, stopping));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::good);
    const ReceivedRequest request = server.received().at(0);
    EXPECT_EQ(request.headers.value("x-veranox-token"), "tök en");
    EXPECT_EQ(request.headers.value("content-length"), "0");
    EXPECT_FALSE(request.headers.contains("content-type"));
    EXPECT_EQ(request.body, "");
}

TEST_F(ApiWrites, ATokenMayHaveFourKibibytes)
{
    writeToken(QByteArray(4096, 'x'));
    server.expect("POST /api/shutdown", reply(200, stopping));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::good);
    EXPECT_EQ(server.received().at(0).headers.value("x-veranox-token"), QByteArray(4096, 'x'));
}

TEST_F(ApiWrites, TheTokenIsReadOnceAndKept)
{
    writeToken("first");
    server.expect("POST /api/shutdown", reply(200, stopping));
    server.expect("POST /api/shutdown", reply(200, stopping));
    complete(client.shutdown());
    writeToken("second");
    complete(client.shutdown());
    EXPECT_EQ(server.received().at(1).headers.value("x-veranox-token"), "first");
}

TEST_F(ApiWrites, A403ReadsTheTokenAnewAndSendsOnceMoreWithTheSameCorrelation)
{
    writeToken("old");
    server.expect("POST /api/shutdown", [this](ServerConnection &connection) {
        writeToken("new");
        connection.reply(403, refusal);
    });
    server.expect("POST /api/shutdown", reply(200, stopping));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::good);
    const auto received = server.received();
    ASSERT_EQ(received.size(), 2);
    EXPECT_EQ(received.at(0).headers.value("x-veranox-token"), "old");
    EXPECT_EQ(received.at(0).headers.value("x-veranox-attempt"), "1");
    EXPECT_EQ(received.at(1).headers.value("x-veranox-token"), "new");
    EXPECT_EQ(received.at(1).headers.value("x-veranox-attempt"), "2");
    EXPECT_EQ(received.at(0).headers.value("x-correlation-id"), received.at(1).headers.value("x-correlation-id"));

    server.expect("POST /api/shutdown", reply(200, stopping)); // the new token is the kept one
    complete(client.shutdown());
    EXPECT_EQ(server.received().at(2).headers.value("x-veranox-token"), "new");
}

TEST_F(ApiWrites, ASecond403IsFinalAndItsTextCounts)
{
    writeToken("t");
    server.expect("POST /api/shutdown", reply(403, R"({"error":"first"})"));
    server.expect("POST /api/shutdown", reply(403, R"({"error":"second"})"));
    const auto outcome = complete(client.shutdown());
    EXPECT_EQ(outcome.ending, Ending::refused);
    EXPECT_EQ(outcome.text, u"second");
    EXPECT_EQ(server.received().size(), 2);
}

TEST_F(ApiWrites, The403MayHaveAnyBodyToBeTriedAgain)
{
    server.expect("POST /api/shutdown", reply(403, "no JSON"));
    server.expect("POST /api/shutdown", reply(200, stopping));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::good);
}

TEST_F(ApiWrites, NoOtherFailureIsTriedAgain)
{
    for (const int status : {400, 401, 404, 407, 408, 429, 500, 503}) {
        server.expect("POST /api/shutdown", reply(status, refusal));
        EXPECT_EQ(complete(client.shutdown()).ending, Ending::refused) << status;
    }
    server.expect("POST /api/shutdown", hostile::closeAtOnce());
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::unavailable);
    EXPECT_EQ(server.received().size(), 9);
}

TEST_F(ApiWrites, WithoutAUsableTokenTheWriteGoesOutWithoutOne)
{
    const auto sendsNoToken = [this] {
        server.expect("POST /api/shutdown", reply(200, stopping));
        EXPECT_EQ(complete(client.shutdown()).ending, Ending::good);
        EXPECT_FALSE(server.received().last().headers.contains("x-veranox-token"));
    };
    sendsNoToken(); // no file
    for (const QByteArray content :
        {"", " \n\t", "\xff\xfe", "two\nlines", "a\rb", "a\x01", "cut\xc3", "cut\xe2\x82", "cut\xf0\x9f\x98"}) {
        writeToken(content);
        sendsNoToken();
    }
    writeToken(QByteArray(4097, 'x'));
    sendsNoToken();
    ASSERT_TRUE(QFile::remove(tokenPath()));
    ASSERT_EQ(::mkfifo(tokenPath().toUtf8().constData(), 0600), 0); // reading it would wait for a writer
    sendsNoToken();
    ASSERT_TRUE(QFile::remove(tokenPath()));

    writeToken("now"); // and nothing of that was kept
    server.expect("POST /api/shutdown", reply(200, stopping));
    complete(client.shutdown());
    EXPECT_EQ(server.received().last().headers.value("x-veranox-token"), "now");
}

TEST_F(ApiWrites, A403WithoutATokenIsTriedAgainWithTheOneThatCameMeanwhile)
{
    server.expect("POST /api/shutdown", [this](ServerConnection &connection) {
        writeToken("late");
        connection.reply(403, refusal);
    });
    server.expect("POST /api/shutdown", reply(200, stopping));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::good);
    EXPECT_FALSE(server.received().at(0).headers.contains("x-veranox-token"));
    EXPECT_EQ(server.received().at(1).headers.value("x-veranox-token"), "late");
}

TEST_F(ApiWrites, TheSecondAttemptGoesWithoutATokenWhenItsFileIsGone)
{
    writeToken("t");
    server.expect("POST /api/shutdown", [this](ServerConnection &connection) {
        QFile::remove(tokenPath());
        connection.reply(403, refusal);
    });
    server.expect("POST /api/shutdown", reply(403, refusal));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::refused);
    EXPECT_FALSE(server.received().at(1).headers.contains("x-veranox-token"));
}

TEST_F(ApiWrites, AnAnswerToShutdownThatIsNotItsRecordIsUndecodable)
{
    for (const QByteArray body : {"{}", "[]", "", R"({"status":3})"}) {
        server.expect("POST /api/shutdown", reply(200, body));
        EXPECT_EQ(complete(client.shutdown()).ending, Ending::undecodable) << body.toStdString();
    }
}

TEST_F(ApiWrites, EachAttemptHasTwelveSeconds)
{
    writeToken("t");
    const auto gate = std::make_shared<Gate>();
    server.expect("POST /api/shutdown", replyAfter(gate, 403, refusal));
    server.expect("POST /api/shutdown", hostile::hang());
    const auto outcome = begin(client.shutdown());
    ASSERT_TRUE(waitForRequests(1));
    world.run(11s);
    gate->open();
    ASSERT_TRUE(waitForRequests(2));
    world.run(11999ms);
    EXPECT_FALSE(outcome->ended());
    world.run(1ms);
    world.run();
    EXPECT_EQ(outcome->ending, Ending::unavailable);
}

using ApiCancel = ApiClientTest;

TEST_F(ApiCancel, EndsASendingCallAtOnceAndDropsItsConnection)
{
    for (int call = 1; call <= 200; ++call) { // often: the dropped connection must never be taken for the answer
        server.expect("GET /api/profiles", hostile::hang());
        const auto outcome = begin(client.fetchProfiles());
        ASSERT_TRUE(waitForRequests(call));
        lastJob().cancel();
        world.run();
        ASSERT_EQ(outcome->ending, Ending::cancelled) << call;
        EXPECT_EQ(world.seconds(), 0);
        EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == call; }));
    }
}

TEST_F(ApiCancel, SendsNothingForACallThatWasCancelledBefore)
{
    const auto outcome = begin(client.fetchProfiles());
    const auto health = begin(client.healthCheck());
    const auto config = begin(client.fetchConfig());
    const auto editable = begin(client.fetchEditableConfig());
    const auto shutdown = begin(client.shutdown());
    jobs.cancelAll();
    world.run();
    EXPECT_EQ(outcome->ending, Ending::cancelled);
    EXPECT_EQ(health->value, false);
    EXPECT_EQ(config->ending, Ending::cancelled);
    EXPECT_EQ(editable->ending, Ending::cancelled);
    EXPECT_EQ(shutdown->ending, Ending::cancelled);
    EXPECT_EQ(server.received().size(), 0);
}

TEST_F(ApiCancel, BetweenTheAttemptsOfAWriteSendsNoSecondOne)
{
    const auto gate = std::make_shared<Gate>();
    server.expect("POST /api/shutdown", replyAfter(gate, 403, refusal));
    const auto outcome = begin(client.shutdown());
    ASSERT_TRUE(waitForRequests(1));
    lastJob().cancel();
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return outcome->ended(); }));
    EXPECT_EQ(outcome->ending, Ending::cancelled);
    EXPECT_EQ(server.received().size(), 1);
}

TEST_F(ApiCancel, ADestroyedCallerDropsItsConnection)
{
    server.expect("GET /api/profiles", hostile::hang());
    {
        jobs::JobScope owner(world.queue);
        const auto job = owner.start(client.fetchProfiles());
        ASSERT_TRUE(waitForRequests(1));
    }
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 1; }));
}

TEST_F(ApiCancel, AClientCanDieWhileItsRequestsAreOnTheirWay)
{
    server.expect("GET /api/config", hostile::hang());
    server.expect("GET /api/tunnels", hostile::hang());
    {
        VeranoxAPIClient brief(world.queue, server.url(), session, identity(), tokenPath());
        jobs::JobScope owner(world.queue);
        const auto config = owner.start(brief.fetchConfig());
        const auto tunnels = owner.start(brief.fetchTunnels());
        ASSERT_TRUE(waitForRequests(2));
    }
    EXPECT_TRUE(waitUntil([&] { return server.connectionsClosed() == 2; }));
}
