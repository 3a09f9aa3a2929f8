// What the store does with publications and the service.
#include "Tests/Support/JobResult.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using Result = VeranoxPublicationActionResult;

class StorePublicationTests : public StoreWorld {
protected:
    StorePublicationTests()
    {
        service->profiles.answer({owner(u"home"_s, u"tsnet"_s), owner(u"old"_s, u"tailscaled"_s)});
        refresh();
    }

    static VeranoxProfile owner(const QString &name, const QString &backend)
    {
        VeranoxProfile record = profile(name, true, u"Running"_s);
        record.backend = backend;
        return record;
    }

    static QList<VeranoxPublication> list(const QString &name, const QString &state = u"listening"_s)
    {
        return {publication(name, state)};
    }

    Result run(jobs::Async<Result> operation) { return resultOf(world, std::move(operation)); }
};

TEST_F(StorePublicationTests, WhyTheyCannotBeChanged)
{
    const QString start =
        u"Start the Veranox service to add or edit publications — the configuration is read and written through it."_s;
    const QString wait = u"Wait for the current operation to finish."_s;
    EXPECT_EQ(store->publicationsUnavailableReason(), std::nullopt);
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(store->publicationsUnavailableReason(), start);
    service->shutdownRequest.hold();
    service->profiles.answer({});
    refresh();
    store->restartRouterForPendingChanges();
    world.run();
    ASSERT_TRUE(store->isRestartingRouter());
    EXPECT_EQ(store->publicationsUnavailableReason(), wait);
}

TEST_F(StorePublicationTests, WhileQuittingTheyWait)
{
    service->shutdownRequest.hold();
    jobs::JobScope scope(world.queue);
    scope.start(store->quitAndShutdown());
    world.run();
    ASSERT_TRUE(store->isQuitting());
    EXPECT_EQ(store->publicationsUnavailableReason(), u"Wait for the current operation to finish."_s);
}

TEST_F(StorePublicationTests, BeforeTheFirstContactTheServiceMustBeStarted)
{
    rebuild(command());
    EXPECT_EQ(store->publicationsUnavailableReason(),
        u"Start the Veranox service to add or edit publications — the configuration is read and written through it."_s);
}

TEST_F(StorePublicationTests, ARefreshThatBeganBeforeADeletionDoesNotUndoIt)
{
    service->publications.answer(list(u"web"_s));
    service->publications.hold();
    refresh();
    service->publicationDeletion.answer({});
    EXPECT_EQ(run(store->deletePublication(u"web"_s)), Result::success(u"Publication deleted."_s));
    service->publications.release();
    world.run();
    EXPECT_EQ(store->publications(), QList<VeranoxPublication>());
}
