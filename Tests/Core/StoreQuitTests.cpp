#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreQuit : public StoreWorld {
protected:
    StoreQuit() : scope(world.queue) { }
    jobs::JobScope scope;
};

TEST_F(StoreQuit, asksAnOnlineServiceToStopAndEndsOffline)
{
    refresh();
    store->startRefreshLoop();
    const auto quit = scope.start(store->quitAndShutdown());
    world.run();
    EXPECT_TRUE(store->isQuitting());
    EXPECT_EQ(store->lastActionMessage(), u"Stopping Veranox and profile connections..."_s);
    EXPECT_EQ(service->shutdownRequest.calls, 1);
    world.run(349ms);
    EXPECT_FALSE(quit.finished());
    world.run(1ms);
    EXPECT_TRUE(quit.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(store->lastActionMessage(), u"Veranox stopped."_s);
    EXPECT_EQ(log(), QStringList({u"[GUI] shutdown requested"_s}));
    EXPECT_TRUE(observed->snapshots.last().isBusy);
    const int sent = service->profiles.calls;
    world.run(1h);
    EXPECT_EQ(service->profiles.calls, sent);
}

TEST_F(StoreQuit, twoQuitsSendOneRequestAndEndTogether)
{
    refresh();
    service->shutdownRequest.hold();
    const auto first = scope.start(store->quitAndShutdown());
    const auto second = scope.start(store->quitAndShutdown());
    world.run();
    service->shutdownRequest.release();
    world.run(349ms);
    EXPECT_FALSE(first.finished() || second.finished());
    world.run(1ms);
    EXPECT_TRUE(first.finished() && second.finished());
    const auto late = scope.start(store->quitAndShutdown());
    world.run();
    EXPECT_TRUE(late.finished());
    EXPECT_EQ(service->shutdownRequest.calls, 1);
}

TEST_F(StoreQuit, sendsNothingUnlessOnline)
{
    const auto quit = scope.start(store->quitAndShutdown());
    world.run();
    EXPECT_TRUE(quit.finished());
    EXPECT_EQ(service->shutdownRequest.calls, 0);
    EXPECT_EQ(store->lastActionMessage(), u"Veranox stopped."_s);
}

TEST_F(StoreQuit, aRefusedShutdownIsLoggedAndTheQuitGoesOnWithoutAWait)
{
    refresh();
    service->shutdownRequest.fail(VeranoxAPIFailure::refused(u"busy"_s, 409));
    const auto quit = scope.start(store->quitAndShutdown());
    world.run();
    EXPECT_TRUE(quit.finished());
    EXPECT_EQ(log(), QStringList({u"[GUI] shutdown request failed: busy"_s}));
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
}

TEST_F(StoreQuit, aRefreshInFlightIsCancelledAndDoesNotBringTheStateBack)
{
    refresh();
    store->startRefreshLoop();
    service->profiles.hold();
    world.run(15s);
    ASSERT_TRUE(store->isRefreshing());
    const auto quit = scope.start(store->quitAndShutdown());
    world.run(350ms);
    service->profiles.release();
    world.run(1min);
    EXPECT_TRUE(quit.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_FALSE(store->isRefreshing());
}

TEST_F(StoreQuit, theLastWordIsIdempotent)
{
    refresh();
    store->startRefreshLoop();
    world.run(1s);
    store->shutdown();
    store->shutdown();
    world.run(1h);
    EXPECT_EQ(service->profiles.calls, 1); // the refresh that the interrupted sleep is followed by sends nothing
    EXPECT_EQ(service->shutdownRequest.calls, 0);
    EXPECT_EQ(runtime->calls.count(u"terminateImmediately"_s), 2); // which finds nothing left to do
}

TEST_F(StoreQuit, theLastWordStopsThePulse)
{
    service->profiles.answer({profile(u"home"_s, false, u"Starting"_s)});
    refresh();
    ASSERT_EQ(store->menuBarPulse(), 0.35);
    store->shutdown();
    EXPECT_EQ(store->menuBarPulse(), 1.0);
    const ChangeCount steps([&] { return store->menuBarPulse(); });
    world.run(10s);
    EXPECT_EQ(steps.count(), 0);
}

TEST_F(StoreQuit, theChildIsStoppedAfterTheRequestAndWaitedFor)
{
    refresh();
    runtime->gui = {.isRunning = true, .terminationStatus = 0};
    runtime->stopTime = 2s;
    const auto quit = scope.start(store->quitAndShutdown());
    world.run(349ms);
    EXPECT_TRUE(runtime->calls.isEmpty());
    world.run(1ms);
    EXPECT_EQ(runtime->calls, QStringList({u"shutdown"_s}));
    world.run(1999ms);
    EXPECT_FALSE(quit.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    world.run(1ms);
    EXPECT_TRUE(quit.finished());
    EXPECT_FALSE(runtime->gui);
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
}

TEST_F(StoreQuit, whileStartingSendsNoRequestAndStopsTheChild)
{
    service->health.answer(false);
    const auto start = scope.start(store->ensureServiceStarted());
    world.run(1s);
    ASSERT_EQ(store->serviceState(), ServiceState::starting());
    const auto quit = scope.start(store->quitAndShutdown());
    world.run(1min);
    EXPECT_TRUE(quit.finished() && start.finished());
    EXPECT_EQ(service->shutdownRequest.calls, 0);
    EXPECT_EQ(runtime->calls.last(), u"shutdown"_s);
    EXPECT_EQ(store->serviceState(), ServiceState::offline()); // the start that was cut short says nothing
}

TEST_F(StoreQuit, duringTheFirstProbeLaunchesNothing)
{
    service->health.hold();
    scope.start(store->start());
    world.run();
    service->health.answer(false);
    scope.start(store->quitAndShutdown());
    world.run();
    service->health.release();
    world.run(1min);
    EXPECT_EQ(runtime->calls, QStringList({u"shutdown"_s}));
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
}

TEST_F(StoreQuit, nothingIsStartedOnceItHasBegun)
{
    service->health.answer(false);
    runtime->stopTime = 2s;
    runtime->gui = {.isRunning = true, .terminationStatus = 0};
    scope.start(store->quitAndShutdown());
    world.run(1s);
    store->startRouter();
    const auto start = scope.start(store->start()); // one that was still reading the log
    world.run(1min);
    EXPECT_TRUE(start.finished());
    EXPECT_EQ(runtime->calls, QStringList({u"shutdown"_s}));
    EXPECT_EQ(service->health.calls, 0);
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(store->lastActionMessage(), u"Veranox stopped."_s);
}

TEST_F(StoreQuit, theLastWordAsksTheChildToStopWithoutWaiting)
{
    runtime->gui = {.isRunning = true, .terminationStatus = 0};
    runtime->stopTime = 2s;
    store->shutdown();
    EXPECT_EQ(runtime->calls, QStringList({u"terminateImmediately"_s}));
}
