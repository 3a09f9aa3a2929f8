#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreSchedule : public StoreWorld {
protected:
    // Advances time in steps and returns the seconds at which refreshes were sent.
    QList<double> refreshTimes(jobs::Clock::Duration span)
    {
        QList<double> times;
        int seen = service->profiles.calls;
        for (jobs::Clock::Duration passed{}; passed < span; passed += 500ms) {
            world.run(500ms);
            for (; seen < service->profiles.calls; ++seen)
                times.append(world.seconds());
        }
        return times;
    }

    void settle() { service->profiles.answer({profile(u"home"_s, true, u"Running"_s)}); }
    void unsettle() { service->profiles.answer({profile(u"home"_s, false, u"Starting"_s)}); }
};

TEST_F(StoreSchedule, settledProfilesAreReadEvery15Seconds)
{
    store->startRefreshLoop();
    EXPECT_EQ(refreshTimes(61s), QList<double>({15, 30, 45, 60}));
}

TEST_F(StoreSchedule, startReadsAtOnceAndThenOnSchedule)
{
    jobs::JobScope scope(world.queue);
    scope.start(store->start());
    world.run();
    EXPECT_EQ(service->profiles.calls, 1);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(refreshTimes(31s), QList<double>({15, 30}));
    ASSERT_FALSE(log().isEmpty());
    EXPECT_TRUE(log().first().startsWith(u"[APP] session started: version="_s));
    EXPECT_EQ(log().mid(1, 3),
        QStringList({u"[APP] automatic local service startup requested"_s,
            u"[GUI] probing local service health at 127.0.0.1:43200"_s,
            u"[GUI] local service health check succeeded; connected to existing service"_s}));
}

TEST_F(StoreSchedule, settlingProfilesAreReadEvery2SecondsForAMinute)
{
    unsettle();
    refresh();
    store->startRefreshLoop();
    const QList<double> times = refreshTimes(120s);
    QList<double> expected;
    for (int poll = 1; poll <= 30; ++poll)
        expected.append(2.0 * poll);
    expected << 75 << 90 << 105 << 120;
    EXPECT_EQ(times, expected);
}

TEST_F(StoreSchedule, theCountStartsOverWhenALaterSettlingBegins)
{
    unsettle();
    refresh();
    store->startRefreshLoop();
    refreshTimes(75s); // the 30 polls are used up, and one slow one
    settle();
    EXPECT_EQ(refreshTimes(30s), QList<double>({90, 105}));
    unsettle();
    const QList<double> times = refreshTimes(90s);
    ASSERT_GE(times.size(), 32);
    EXPECT_EQ(times[0], 120);
    EXPECT_EQ(times[1], 122);
    EXPECT_EQ(times[30], 180);
    EXPECT_EQ(times[31], 195);
}

TEST_F(StoreSchedule, aSettlingThatBeginsInTheLoopGetsAll30Polls)
{
    store->startRefreshLoop();
    unsettle();
    const QList<double> times = refreshTimes(100s);
    ASSERT_GE(times.size(), 32);
    EXPECT_EQ(times[0], 15);
    EXPECT_EQ(times[30], 75); // 15 and thirty times 2
    EXPECT_EQ(times[31], 90);
}

TEST_F(StoreSchedule, aSecondStartOfTheLoopDoesNothing)
{
    store->startRefreshLoop();
    world.run(5s);
    store->startRefreshLoop();
    EXPECT_EQ(refreshTimes(30s), QList<double>({15, 30}));
}

TEST_F(StoreSchedule, aSlowRefreshDelaysTheNextOneAndNeverOverlaps)
{
    store->startRefreshLoop();
    service->tunnels.hold();
    world.run(40s);
    EXPECT_EQ(service->profiles.calls, 1);
    service->tunnels.release();
    world.run(14s);
    EXPECT_EQ(service->profiles.calls, 1);
    world.run(1s);
    EXPECT_EQ(service->profiles.calls, 2);
}

TEST_F(StoreSchedule, nothingIsSentAfterShutdown)
{
    store->startRefreshLoop();
    world.run(15s);
    store->shutdown();
    world.run();
    const int sent = service->profiles.calls;
    world.run(10min);
    EXPECT_EQ(service->profiles.calls, sent);
}

TEST_F(StoreSchedule, failuresKeepTheScheduleAndOneLineInTheLog)
{
    service->profiles.fail(unavailable());
    store->startRefreshLoop();
    EXPECT_EQ(refreshTimes(600s).size(), 40);
    EXPECT_EQ(log().size(), 1);
}
