#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreRestart : public StoreWorld {
protected:
    StoreRestart() : scope(world.queue) { }

    jobs::Job<> restart() { return scope.start(store->restartRouterForPendingChangesAsync()); }

    jobs::JobScope scope;
};

TEST_F(StoreRestart, stopsTheServiceAndStartsItAgain)
{
    refresh();
    const auto job = restart();
    world.run();
    EXPECT_TRUE(store->isRestartingRouter());
    EXPECT_EQ(store->lastActionMessage(), u"Restarting router..."_s);
    EXPECT_EQ(service->shutdownRequest.calls, 1);
    EXPECT_TRUE(observed->snapshots.last().isBusy);
    world.run(449ms);
    EXPECT_TRUE(runtime->calls.isEmpty());
    service->health.answer(false);
    world.run(1ms);
    EXPECT_EQ(runtime->calls, QStringList({u"shutdown"_s, u"terminateStaleGUIService"_s, u"startGUI"_s}));
    EXPECT_EQ(store->serviceState(), ServiceState::starting());
    service->health.answer(true);
    world.run(400ms);
    EXPECT_TRUE(job.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(store->lastActionMessage(), u"Router restarted. Changes are active."_s);
    EXPECT_FALSE(store->isRestartingRouter());
    EXPECT_FALSE(observed->snapshots.last().isBusy);
    EXPECT_TRUE(log().contains(u"[GUI] restart requested"_s));
}

TEST_F(StoreRestart, waitsForTheStopBeforeItShowsTheStart)
{
    refresh();
    runtime->stopTime = 2s;
    restart();
    world.run(2s);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    world.run(450ms);
    EXPECT_EQ(service->health.calls, 1);
}

TEST_F(StoreRestart, goesOnWhenTheRequestFails)
{
    service->shutdownRequest.fail(VeranoxAPIFailure::refused(u"busy"_s, 409));
    const auto job = restart();
    world.run(); // and does not wait for a service to let go
    EXPECT_TRUE(job.finished());
    EXPECT_TRUE(log().contains(u"[GUI] restart shutdown failed: busy"_s));
    EXPECT_FALSE(log().contains(u"[GUI] restart requested"_s));
    EXPECT_EQ(runtime->calls, QStringList({u"shutdown"_s}));
    EXPECT_EQ(store->lastActionMessage(), u"Router restarted. Changes are active."_s);
}

TEST_F(StoreRestart, goesOnWithoutAWordWhenTheRequestIsCancelled)
{
    service->shutdownRequest.fail(VeranoxAPIFailure::cancelled());
    const auto job = restart();
    world.run();
    EXPECT_TRUE(job.finished());
    EXPECT_EQ(log().first(), u"[GUI] probing local service health at 127.0.0.1:43200"_s);
}

TEST_F(StoreRestart, aSecondOneMeanwhileIsDropped)
{
    restart();
    world.run(100ms);
    const auto second = restart();
    world.run();
    EXPECT_TRUE(second.finished());
    EXPECT_TRUE(store->isRestartingRouter());
    world.run(1s);
    EXPECT_EQ(service->shutdownRequest.calls, 1);
    EXPECT_EQ(runtime->calls.count(u"shutdown"_s), 1);
}

TEST_F(StoreRestart, aFailureIsToldAndTheFlagIsCleared)
{
    service->health.answer(false);
    service->profiles.fail(unavailable());
    const auto job = restart();
    world.run(31s);
    EXPECT_TRUE(job.finished());
    EXPECT_EQ(store->lastActionMessage(), u"Router restart failed: Start Veranox to enable local routing"_s);
    EXPECT_FALSE(store->isRestartingRouter());
}

TEST_F(StoreRestart, aFailureNamesARouterThatStillRuns)
{
    service->health.answer(false);
    service->profiles.fail(unavailable());
    runtime->router = {.isRunning = true, .terminationStatus = 0};
    restart();
    world.run(31s);
    EXPECT_EQ(store->lastActionMessage(), u"Router restart failed: Waiting for the service to answer"_s);
    runtime->router = {.isRunning = false, .terminationStatus = 0};
    EXPECT_EQ(store->routerStatusDetail(), u"Start Veranox to enable local routing"_s);
}

TEST_F(StoreRestart, theRefreshLoopStopsForItAndRunsAfterIt)
{
    store->startRefreshLoop();
    restart();
    world.run(450ms);
    const int refreshed = service->profiles.calls;
    world.run(15s);
    EXPECT_EQ(service->profiles.calls, refreshed + 1);
}

TEST_F(StoreRestart, aRefreshThatItCancelsKeepsTheState)
{
    refresh();
    store->startRefreshLoop();
    service->profiles.hold();
    world.run(15s);
    ASSERT_TRUE(store->isRefreshing());
    restart();
    world.run(100ms);
    EXPECT_FALSE(store->isRefreshing());
    EXPECT_EQ(store->serviceState(), ServiceState::online());
}

TEST_F(StoreRestart, startsAServiceThatWasNeverStarted)
{
    service->shutdownRequest.fail(unavailable());
    service->health.answer(false);
    store->restartRouterForPendingChanges();
    world.run();
    service->health.answer(true);
    world.run(400ms);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_TRUE(runtime->gui->isRunning);
}

TEST_F(StoreRestart, aQuitInBetweenLeavesNoServiceBehind)
{
    refresh();
    service->health.answer(false);
    runtime->stopTime = 1s;
    restart();
    world.run(500ms);
    const auto quit = scope.start(store->quitAndShutdown());
    world.run(1min);
    EXPECT_TRUE(quit.finished());
    EXPECT_FALSE(runtime->calls.contains(u"startGUI"_s));
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
}

TEST_F(StoreRestart, aQuitInItsLastStepsHasTheLastWord)
{
    refresh();
    service->profiles.hold();
    const auto job = restart();
    world.run(450ms);
    ASSERT_TRUE(store->isRefreshing()); // the last step but the outcome
    const auto quit = scope.start(store->quitAndShutdown());
    world.run(350ms);
    ASSERT_TRUE(quit.finished());
    service->profiles.release();
    const int sent = service->profiles.calls;
    world.run(1min);
    EXPECT_TRUE(job.finished());
    EXPECT_EQ(store->lastActionMessage(), u"Veranox stopped."_s);
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(service->profiles.calls, sent) << "a refresh loop was started";
}

TEST_F(StoreRestart, whoseJobDiesIsOver)
{
    service->shutdownRequest.hold();
    {
        jobs::JobScope view(world.queue);
        view.start(store->restartRouterForPendingChangesAsync());
        world.run();
        ASSERT_TRUE(store->isRestartingRouter());
    }
    EXPECT_FALSE(store->isRestartingRouter());
    EXPECT_FALSE(observed->snapshots.last().isBusy);
}
