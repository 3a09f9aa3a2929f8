#include "Tests/API/ApiClientTest.h"

// A service may refuse a request by its head, and need not take the rest.
class ApiLargeWrites : public ApiClientTest {
protected:
    static VeranoxEditableConfig largeDocument()
    {
        auto document = VeranoxEditableConfig::emptyForFirstProfile();
        document.router.profileHostnameBase = QString(16 * 1024 * 1024, u'x'); // more than the sockets hold
        return document;
    }
    void SetUp() override { server.answerBeforeTheBody(); }

    const QByteArray tooLarge = R"({"error":"too large"})";
};

TEST_F(ApiLargeWrites, TheAnswerCountsWhenTheConnectionBreaksBehindIt)
{
    for (int i = 0; i < 5; ++i) { // often: the break and the answer race
        server.expect("POST /api/config?force=true", reply(413, tooLarge));
        const auto outcome = complete(client.saveConfig(largeDocument()));
        ASSERT_EQ(outcome.ending, Ending::refused) << i;
        EXPECT_EQ(outcome.text, u"too large");
    }
}

TEST_F(ApiLargeWrites, TheAnswerIsReadThoughNobodyTakesTheRest)
{
    const auto gate = std::make_shared<Gate>();
    server.expect("POST /api/config?force=true", [this, gate](ServerConnection &connection) {
        connection.reply(413, tooLarge);
        gate->pass(connection.stopToken());
    });
    const auto outcome = complete(client.saveConfig(largeDocument()));
    gate->open();
    EXPECT_EQ(outcome.ending, Ending::refused);
    EXPECT_EQ(outcome.text, u"too large");
}

TEST_F(ApiLargeWrites, ABreakWithoutAnAnswerIsNone)
{
    for (const Behaviour &behaviour : {hostile::closeAtOnce(), hostile::sendRaw("HTTP/1.1 413 Too La")}) {
        server.expect("POST /api/config?force=true", behaviour);
        EXPECT_EQ(complete(client.saveConfig(largeDocument())).ending, Ending::unavailable);
    }
}

TEST_F(ApiLargeWrites, ACancelledOneEndsAtOnce)
{
    const auto gate = std::make_shared<Gate>();
    server.expect(
        "POST /api/config?force=true", [gate](ServerConnection &connection) { gate->pass(connection.stopToken()); });
    const auto outcome = begin(client.saveConfig(largeDocument()));
    ASSERT_TRUE(waitForRequests(1));
    lastJob().cancel();
    world.run();
    EXPECT_EQ(outcome->ending, Ending::cancelled);
    gate->open();
}
