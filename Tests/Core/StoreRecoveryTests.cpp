// What follows a crash of the service that the application launched.
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreRecovery : public StoreWorld {
protected:
    StoreRecovery() : scope(world.queue)
    {
        service->health.answer(false);
        scope.start(store->ensureServiceStarted());
        world.run();
        EXPECT_EQ(launches(), 1);
    }

    qsizetype launches() const { return runtime->calls.count(u"startGUI"_s); }

    // The service dies and does not answer; a refresh does not reach it either.
    void crash(std::int32_t status = 1)
    {
        service->health.answer(false);
        service->profiles.fail(unavailable());
        runtime->crash(status);
    }

    // Milliseconds from now to the next launch.
    int millisecondsToLaunch()
    {
        const qsizetype before = launches();
        for (int passed = 0; passed <= 60'000; passed += 50) {
            world.run(passed == 0 ? 0ms : 50ms);
            if (launches() > before)
                return passed;
        }
        return -1;
    }

    void crashUntilGivenUp()
    {
        for (int crashes = 1; crashes <= 3; ++crashes) {
            crash();
            ASSERT_GT(millisecondsToLaunch(), 0);
        }
        crash();
        ASSERT_EQ(store->serviceState(), givenUp());
        world.run(1min); // nothing comes of it
    }

    void comeUp()
    {
        service->health.answer(true);
        service->profiles.answer({profile(u"home"_s, true, u"Running"_s)});
    }

    static ServiceState crashed(int status)
    {
        return ServiceState::error(u"GUI service stopped unexpectedly (status %1)."_s.arg(status));
    }
    static ServiceState givenUp()
    {
        return ServiceState::error(
            u"GUI service keeps crashing. Check the runtime log, then restart Veranox manually."_s);
    }

    jobs::JobScope scope;
};

TEST_F(StoreRecovery, aCrashIsShownAtOnceAndMendedASecondLater)
{
    comeUp();
    world.run(400ms);
    ASSERT_EQ(store->serviceState(), ServiceState::online());
    crash(137);
    EXPECT_EQ(store->serviceState(), crashed(137));
    EXPECT_EQ(log().last(), u"[GUI] service exited unexpectedly with status 137"_s);
    EXPECT_EQ(millisecondsToLaunch(), 1000);
    comeUp();
    world.run(400ms);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(service->profiles.calls, 1); // and refreshed
}

TEST_F(StoreRecovery, aRowOfCrashesWaits1Then2Then4Seconds)
{
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 1000);
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 2000);
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 4000);
}

TEST_F(StoreRecovery, aFourthCrashStopsRecovery)
{
    for (int crashes = 1; crashes <= 3; ++crashes) {
        crash();
        ASSERT_GT(millisecondsToLaunch(), 0);
    }
    crash();
    EXPECT_EQ(store->serviceState(), givenUp());
    EXPECT_EQ(log().last(), u"[GUI] service crashed 3 times; stopping automatic recovery"_s);
    EXPECT_EQ(millisecondsToLaunch(), -1);
}

TEST_F(StoreRecovery, aCrash61SecondsAfterTheLastAttemptStartsOver)
{
    crash();
    ASSERT_EQ(millisecondsToLaunch(), 1000);
    crash();
    ASSERT_EQ(millisecondsToLaunch(), 2000);
    world.run(59s); // the attempt was noted at the crash, 2 seconds before the launch
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 1000);
}

TEST_F(StoreRecovery, aCrash60SecondsAfterTheLastAttemptDoesNot)
{
    crash();
    ASSERT_EQ(millisecondsToLaunch(), 1000);
    world.run(59s);
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 2000);
}

TEST_F(StoreRecovery, aServiceThatAnswersOnceThenCrashesStartsOverAt1Second)
{
    for (int round = 1; round <= 6; ++round) { // twice as often as an unbroken row allows
        crash();
        ASSERT_EQ(millisecondsToLaunch(), 1000) << round;
        comeUp();
        world.run(400ms);
        ASSERT_EQ(store->serviceState(), ServiceState::online());
    }
}

TEST_F(StoreRecovery, aRefreshThatSucceedsStartsOverToo)
{
    crash();
    ASSERT_EQ(millisecondsToLaunch(), 1000);
    crash();
    service->profiles.answer({}); // somebody else has started one
    refresh();
    ASSERT_EQ(store->serviceState(), ServiceState::online());
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 1000);
}

TEST_F(StoreRecovery, givenUpEndsWithARefreshThatSucceeds)
{
    crashUntilGivenUp();
    comeUp();
    refresh();
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    crash();
    EXPECT_EQ(millisecondsToLaunch(), 1000);
}

TEST_F(StoreRecovery, givenUpEndsWithARestart)
{
    crashUntilGivenUp();
    service->shutdownRequest.fail(unavailable());
    store->restartRouterForPendingChanges();
    world.run();
    comeUp();
    world.run(400ms);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
}

TEST_F(StoreRecovery, aCrashBeforeTheFirstAnswerEndsTheLaunchAndIsMended)
{
    crash(2);
    world.run(400ms);
    EXPECT_TRUE(log().contains(
        u"[GUI] start failed: GUI service exited on launch (status 2). Check the runtime log for the cause."_s));
    EXPECT_EQ(millisecondsToLaunch(), 600);
}

TEST_F(StoreRecovery, aCrashDuringARestartIsNothing)
{
    comeUp();
    world.run(400ms);
    const qsizetype lines = log().size();
    store->restartRouterForPendingChanges();
    world.run(100ms);
    runtime->crash(0);
    EXPECT_FALSE(log().mid(lines).contains(u"[GUI] service exited unexpectedly with status 0"_s));
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    world.run(10s);
    EXPECT_EQ(launches(), 1); // the restart found it answering; no recovery came after it
}

TEST_F(StoreRecovery, aCrashDuringAQuitIsNothing)
{
    comeUp();
    world.run(400ms);
    scope.start(store->quitAndShutdown());
    world.run(100ms);
    runtime->crash(0);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    world.run(10s);
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(launches(), 1);
}

TEST_F(StoreRecovery, aQuitDuringTheDelayEndsTheRecovery)
{
    crash();
    world.run(500ms);
    scope.start(store->quitAndShutdown());
    world.run(10s);
    EXPECT_EQ(launches(), 1);
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
}

TEST_F(StoreRecovery, aRestartDuringTheDelayEndsTheRecovery)
{
    crash();
    runtime->stopTime = 2s; // still restarting when the delay is over
    world.run(500ms);
    store->restartRouterForPendingChanges();
    world.run(1s);
    EXPECT_EQ(launches(), 1);
    world.run(10s);
    EXPECT_EQ(launches(), 2); // by the restart
}

TEST_F(StoreRecovery, recoveryAndAUserStartMerge)
{
    crash();
    world.run(999ms);
    store->startRouter();
    world.run(2s);
    EXPECT_EQ(launches(), 2);
}

TEST_F(StoreRecovery, aStoreThatIsGoneRecoversNothing)
{
    crash();
    world.run(500ms); // the recovery sleeps
    const int rings = world.clock.rings;
    store.reset();
    world.run(1min);
    EXPECT_EQ(world.clock.rings, rings) << "something still waited for its time";
}

TEST_F(StoreRecovery, anAttachedServiceThatDiesIsNotRestarted)
{
    runtime->gui.reset();
    comeUp();
    refresh();
    store->startRefreshLoop();
    service->health.answer(false);
    service->profiles.fail(unavailable());
    world.run(1min);
    EXPECT_EQ(store->serviceState(), ServiceState::error(unavailable().localizedDescription()));
    EXPECT_EQ(launches(), 1);
    comeUp();
    world.run(15s);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
}
