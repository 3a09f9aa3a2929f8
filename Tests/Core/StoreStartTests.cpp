// How the store gets to a service that answers.
#include "Base/Failures/Cancellation.h"
#include "Base/Process/LaunchError.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreServiceStart : public StoreWorld {
protected:
    StoreServiceStart() : scope(world.queue) { }

    jobs::Job<> ensure() { return scope.start(store->ensureServiceStarted()); }

    static ServiceState failed(const QString &message) { return ServiceState::error(message); }

    jobs::JobScope scope;
};

TEST_F(StoreServiceStart, attachesToTheServiceThatAnswers)
{
    const auto start = ensure();
    world.run();
    EXPECT_TRUE(start.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(service->health.calls, 1);
    EXPECT_TRUE(runtime->calls.isEmpty()); // nothing is searched for, nothing launched
    EXPECT_EQ(log(),
        QStringList({u"[GUI] probing local service health at 127.0.0.1:43200"_s,
            u"[GUI] local service health check succeeded; connected to existing service"_s}));
}

TEST_F(StoreServiceStart, launchesItsOwnWhenNoneAnswers)
{
    service->health.answer(false);
    runtime->staleTime = 350ms;
    const auto start = ensure();
    world.run(349ms);
    EXPECT_EQ(store->serviceState(), ServiceState::starting());
    EXPECT_EQ(runtime->calls, QStringList({u"terminateStaleGUIService"_s}));
    world.run(1s);
    EXPECT_EQ(runtime->calls, QStringList({u"terminateStaleGUIService"_s, u"startGUI"_s}));
    EXPECT_EQ(runtime->commands, QList<VeranoxCommand>({command(), command()}));
    service->health.answer(true);
    world.run(400ms);
    EXPECT_TRUE(start.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_TRUE(runtime->gui->isRunning);
    EXPECT_EQ(log(),
        QStringList({u"[GUI] probing local service health at 127.0.0.1:43200"_s,
            u"[GUI] local service health check failed; starting bundled service"_s, u"[GUI] started"_s,
            u"[GUI] service ready on 127.0.0.1:43200"_s}));
}

TEST_F(StoreServiceStart, looksEvery400Milliseconds)
{
    service->health.answer(false);
    ensure();
    world.run();
    EXPECT_EQ(service->health.calls, 2); // the probe, and the first look right after the launch
    world.run(399ms);
    EXPECT_EQ(service->health.calls, 2);
    world.run(1ms);
    EXPECT_EQ(service->health.calls, 3);
    world.run(4s);
    EXPECT_EQ(service->health.calls, 13);
}

TEST_F(StoreServiceStart, aChildThatDiesBeforeItAnswersEndsTheWaitAtOnce)
{
    service->health.answer(false);
    const auto start = ensure();
    world.run(2s);
    EXPECT_FALSE(start.finished());
    runtime->gui = {.isRunning = false, .terminationStatus = 3};
    world.run(400ms);
    EXPECT_TRUE(start.finished());
    const QString message = u"GUI service exited on launch (status 3). Check the runtime log for the cause."_s;
    EXPECT_EQ(store->serviceState(), failed(message));
    EXPECT_EQ(log().last(), u"[GUI] start failed: "_s + message);
}

TEST_F(StoreServiceStart, aChildThatNeverAnswersIsGivenUpAfter30SecondsAndLeftRunning)
{
    service->health.answer(false);
    const auto start = ensure();
    world.run(29'999ms);
    EXPECT_FALSE(start.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::starting());
    world.run(1ms);
    EXPECT_TRUE(start.finished());
    EXPECT_EQ(store->serviceState(), failed(u"GUI service did not become reachable on 127.0.0.1:43200."_s));
    EXPECT_TRUE(runtime->gui->isRunning);
    EXPECT_FALSE(runtime->calls.contains(u"shutdown"_s));
}

TEST_F(StoreServiceStart, aChildThatSomebodyStopsIsNoLongerWaitedFor)
{
    service->health.answer(false);
    const auto start = ensure();
    world.run(2s);
    runtime->gui.reset();
    world.run(400ms);
    EXPECT_TRUE(start.finished());
    EXPECT_EQ(store->serviceState(), failed(u"GUI service did not become reachable on 127.0.0.1:43200."_s));
}

TEST_F(StoreServiceStart, aLaunchFailureIsToldInTheSystemsWords)
{
    service->health.answer(false);
    runtime->failLaunch(LaunchError(u"/opt/veranox/veranox"_s, EACCES));
    ensure();
    world.run();
    const QString message = u"/opt/veranox/veranox could not be started: Permission denied."_s;
    EXPECT_EQ(store->serviceState(), failed(message));
    EXPECT_EQ(log().last(), u"[GUI] start failed: "_s + message);
    world.run(1h);
    EXPECT_EQ(runtime->calls.count(u"startGUI"_s), 1); // not tried again
}

TEST_F(StoreServiceStart, aCancelledLaunchEndsSilently)
{
    service->health.answer(false);
    runtime->failLaunch(Cancellation());
    const auto start = ensure();
    world.run();
    EXPECT_TRUE(start.finished());
    EXPECT_EQ(store->serviceState(), ServiceState::starting());
    EXPECT_EQ(log().last(), u"[GUI] local service health check failed; starting bundled service"_s);
}

TEST_F(StoreServiceStart, callersAtTheSameTimeShareOneStart)
{
    service->health.answer(false);
    const auto first = ensure();
    const auto second = ensure();
    world.run(1s);
    const auto third = ensure();
    world.run(1s);
    EXPECT_FALSE(first.finished() || second.finished() || third.finished());
    service->health.answer(true);
    world.run(400ms);
    EXPECT_TRUE(first.finished() && second.finished() && third.finished());
    EXPECT_EQ(runtime->calls.count(u"startGUI"_s), 1);
    EXPECT_EQ(log().count(u"[GUI] probing local service health at 127.0.0.1:43200"_s), 1);
}

TEST_F(StoreServiceStart, aLaterCallerStartsAnew)
{
    ensure();
    world.run();
    ensure();
    world.run();
    EXPECT_EQ(service->health.calls, 2);
}

TEST_F(StoreServiceStart, everyChangeOfTheStateIsObserved)
{
    service->health.answer(false);
    ensure();
    world.run();
    ASSERT_FALSE(observed->snapshots.isEmpty());
    EXPECT_EQ(observed->snapshots.last().service, ServiceState::starting());
    service->health.answer(true);
    world.run(400ms);
    EXPECT_EQ(observed->snapshots.last().service, ServiceState::online());
}

TEST_F(StoreServiceStart, startRouterTellsTheUserWhenItWorks)
{
    store->startRouter();
    world.run();
    EXPECT_EQ(store->lastActionMessage(), u"Router is active and managed by Veranox service."_s);
    EXPECT_EQ(service->profiles.calls, 1);
    world.run(1h);
    EXPECT_EQ(service->profiles.calls, 1); // it starts no refresh loop
}

TEST_F(StoreServiceStart, startRouterSaysNothingWhenItDoesNot)
{
    service->health.answer(false);
    service->profiles.fail(unavailable());
    store->startRouter();
    world.run(1min);
    EXPECT_EQ(store->lastActionMessage(), QString());
    EXPECT_EQ(service->profiles.calls, 1);
}

class StoreWithoutCommand : public StoreServiceStart {
protected:
    StoreWithoutCommand() : StoreServiceStart() { rebuild(std::nullopt); }
};

TEST_F(StoreWithoutCommand, saysThatThereIsNoService)
{
    service->health.answer(false);
    ensure();
    world.run();
    const QString message = u"Veranox's bundled service could not be found. Reinstall Veranox and try again."_s;
    EXPECT_EQ(store->serviceState(), failed(message));
    EXPECT_EQ(log().last(), u"[GUI] start failed: "_s + message);
    EXPECT_TRUE(runtime->calls.isEmpty());
}

TEST_F(StoreWithoutCommand, attachesAllTheSame)
{
    ensure();
    world.run();
    EXPECT_EQ(store->serviceState(), ServiceState::online());
}
