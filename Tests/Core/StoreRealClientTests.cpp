// The store before the real client, where the reads of a refresh share one document.
#include "Tests/API/ApiClientTest.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class StoreRealClient : public ::testing::Test {
protected:
    StoreRealClient()
    {
        for (const char *list : {"profiles", "tunnels", "publications"})
            server.expect(QByteArray("GET /api/") + list, reply(200, "[]"));
        server.expect("GET /api/environment", reply(200, "{}"));
    }

    bool waitUntil(const std::function<bool()> &condition) { return heartbeat.turnLoopUntil(condition); }

    QTemporaryDir directory;
    ScriptedServer server;
    MainThreadHeartbeat heartbeat;
    jobs::World world;
    VeranoxStore store{world.queue,
        {.apiClient = std::make_unique<VeranoxAPIClient>(world.queue, server.url(), VeranoxDiagnosticSession::make(),
             VeranoxClientIdentity{.appVersion = u"1.2.3"_s, .os = u"Test 4.5.6"_s},
             directory.filePath(u"control.token"_s)),
            .runtimeClient = std::make_unique<FakeRuntimeClient>(),
            .diagnostics = VeranoxDiagnosticSession::make()}};
};

} // namespace

TEST_F(StoreRealClient, aRefreshCancelledWhileItWaitsForTheSharedDocumentChangesNothing)
{
    const auto gate = std::make_shared<Gate>();
    server.expect("GET /api/config", replyAfter(gate, 200, "{}"));
    {
        jobs::JobScope scope(world.queue);
        const auto refresh = scope.start(store.refresh());
        ASSERT_TRUE(waitUntil([&] { return server.received().size() == 5; }));
        ASSERT_TRUE(store.isRefreshing());
        refresh.cancel();
        ASSERT_TRUE(waitUntil([&] { return refresh.finished(); })); // although the service has not answered yet
    }
    EXPECT_EQ(world.seconds(), 0);
    EXPECT_FALSE(store.isRefreshing());
    EXPECT_EQ(store.serviceState(), ServiceState::offline());
    EXPECT_TRUE(store.runtimeLog().isEmpty());
    gate->open();
}
