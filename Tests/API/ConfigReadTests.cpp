#include "Base/Json/Json.h"
#include "Tests/API/ApiClientTest.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

using ApiConfig = ApiClientTest;

TEST_F(ApiConfig, BothReadingsCostOneRequest)
{
    VeranoxEditableConfig document;
    document.router.httpProxy = u"127.0.0.1:9"_s;
    server.expect("GET /api/config", reply(200, encodeRecord(document)));
    const auto config = begin(client.fetchConfig());
    const auto editable = begin(client.fetchEditableConfig());
    ASSERT_TRUE(waitUntil([&] { return config->ended() && editable->ended(); }));
    ASSERT_EQ(config->ending, Ending::good) << config->text.toStdString();
    EXPECT_EQ(config->value->router.httpProxy, u"127.0.0.1:9");
    ASSERT_EQ(editable->ending, Ending::good) << editable->text.toStdString();
    EXPECT_EQ(editable->value, document);
    EXPECT_EQ(complete(client.fetchConfig()).ending, Ending::good); // within its two seconds
    EXPECT_EQ(server.received().size(), 1);
    world.run(2s);
    server.expect("GET /api/config", reply(200, "{}"));
    EXPECT_EQ(complete(client.fetchConfig()).ending, Ending::good);
    EXPECT_EQ(server.received().size(), 2);
}

TEST_F(ApiConfig, ABadDocumentFailsEachReadingAndIsKeptAllTheSame)
{
    server.expect("GET /api/config", reply(200, R"({"router":3})"));
    EXPECT_EQ(complete(client.fetchConfig()).ending, Ending::undecodable);
    EXPECT_EQ(complete(client.fetchConfig()).ending, Ending::undecodable);
    EXPECT_EQ(server.received().size(), 1);
}

TEST_F(ApiConfig, AFailureReachesBothReadingsAndIsNotKept)
{
    server.expect("GET /api/config", reply(500, R"({"error":"broken"})"));
    const auto config = begin(client.fetchConfig());
    const auto editable = begin(client.fetchEditableConfig());
    ASSERT_TRUE(waitUntil([&] { return config->ended() && editable->ended(); }));
    EXPECT_EQ(config->text, u"broken");
    EXPECT_EQ(editable->text, u"broken");
    server.expect("GET /api/config", reply(200, "{}"));
    EXPECT_EQ(complete(client.fetchConfig()).ending, Ending::good);
}

TEST_F(ApiConfig, TheSharedRequestOutlivesTheCancelledCallThatBeganIt)
{
    const auto gate = std::make_shared<Gate>();
    server.expect("GET /api/config", replyAfter(gate, 200, encodeRecord(VeranoxEditableConfig())));
    std::shared_ptr<Outcome<VeranoxConfig>> config;
    {
        const jobs::AmbientScope refresh(u"of-the-starter"_s);
        config = begin(client.fetchConfig());
    }
    const auto starter = lastJob();
    const auto editable = begin(client.fetchEditableConfig());
    ASSERT_TRUE(waitForRequests(1));
    starter.cancel();
    world.run();
    EXPECT_EQ(config->ending, Ending::cancelled);
    EXPECT_FALSE(editable->ended());
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return editable->ended(); }));
    EXPECT_EQ(editable->ending, Ending::good);
    EXPECT_EQ(server.received().at(0).headers.value("x-correlation-id"), "of-the-starter");
}

TEST_F(ApiConfig, ACancelledReadingDoesNotWaitForAServiceThatNeverAnswers)
{
    server.expect("GET /api/config", hostile::hang());
    const auto config = begin(client.fetchConfig());
    const auto editable = begin(client.fetchEditableConfig());
    ASSERT_TRUE(waitForRequests(1));
    jobs.cancelAll();
    world.run();
    EXPECT_EQ(config->ending, Ending::cancelled);
    EXPECT_EQ(editable->ending, Ending::cancelled);
    EXPECT_EQ(world.seconds(), 0);
}
