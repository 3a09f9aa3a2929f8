// The two ends of a start, as the log tells them.
#include "Tests/Support/StoreWorld.h"
#include <QUuid>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreSettlement : public StoreWorld {
protected:
    StoreSettlement() : scope(world.queue) { }

    void start()
    {
        scope.start(store->start());
        world.run();
    }

    void profilesAre(const QString &backendState, bool ok = false)
    {
        service->profiles.answer({profile(u"home"_s, ok, backendState)});
    }

    QList<VeranoxRuntimeLogEntry> events(const QString &code) const
    {
        QList<VeranoxRuntimeLogEntry> found;
        for (const VeranoxRuntimeLogEntry &entry : store->runtimeLog()) {
            if (entry.eventCode == code)
                found.append(entry);
        }
        return found;
    }
    QList<VeranoxRuntimeLogEntry> summaries() const { return events(u"app_startup_summary"_s); }
    QList<VeranoxRuntimeLogEntry> settlements() const { return events(u"app_startup_profile_settlement"_s); }

    jobs::JobScope scope;
};

TEST_F(StoreSettlement, aStartTellsItsStepsInOrder)
{
    start();
    QStringList beginnings;
    for (const QString &line : log())
        beginnings.append(line.section(u' ', 0, 2));
    EXPECT_EQ(beginnings,
        QStringList({u"[APP] session started:"_s, u"[APP] automatic local"_s, u"[GUI] probing local"_s,
            u"[GUI] local service"_s, u"[APP] startup summary:"_s}));
}

TEST_F(StoreSettlement, profilesThatAreUpAtOnceGetASummaryAndNoMore)
{
    start();
    ASSERT_EQ(summaries().size(), 1);
    const VeranoxRuntimeLogEntry summary = summaries().first();
    EXPECT_EQ(summary.message,
        u"[APP] startup summary: service=online profiles_ready=1 profiles_starting=0 profiles_failed=0 "
        "tunnels_ready=0 tunnels_starting=0 tunnels_disabled=0 tunnels_failed=0 "
        "publications_ready=0 publications_starting=0 publications_disabled=0 publications_failed=0 "
        "publications_blocked=0"_s);
    EXPECT_EQ(summary.level, u"info"_s);
    EXPECT_EQ(summary.component, u"macos_app"_s);
    ASSERT_TRUE(summary.correlationID);
    EXPECT_FALSE(QUuid::fromString(*summary.correlationID).isNull());
    EXPECT_EQ(*summary.correlationID, summary.correlationID->toLower());
    world.run(1h);
    EXPECT_TRUE(settlements().isEmpty());
}

TEST_F(StoreSettlement, profilesThatComeUpLaterAreTold)
{
    profilesAre(u"Starting"_s);
    start();
    EXPECT_TRUE(settlements().isEmpty());
    world.run(9s);
    profilesAre(u"Running"_s, true);
    world.run(1s);
    ASSERT_EQ(settlements().size(), 1);
    const VeranoxRuntimeLogEntry settlement = settlements().first();
    EXPECT_TRUE(settlement.message.startsWith(u"[APP] startup profile settlement: outcome=settled duration_ms=10000 "
                                              "service=online profiles_ready=1 profiles_starting=0 "_s));
    EXPECT_EQ(settlement.level, u"info"_s);
    EXPECT_EQ(settlement.component, u"macos_app"_s);
    EXPECT_EQ(settlement.correlationID, summaries().first().correlationID);
    world.run(2min);
    EXPECT_EQ(settlements().size(), 1);
}

TEST_F(StoreSettlement, profilesThatStayUndecidedTimeOutAfter65Seconds)
{
    profilesAre(u"NoState"_s);
    start();
    world.run(64'999ms);
    EXPECT_TRUE(settlements().isEmpty());
    world.run(1ms);
    ASSERT_EQ(settlements().size(), 1);
    EXPECT_TRUE(settlements().first().message.contains(u" outcome=timeout duration_ms=65000 service=online "_s));
    EXPECT_EQ(settlements().first().level, u"warn"_s);
    profilesAre(u"Running"_s, true);
    world.run(2min);
    EXPECT_EQ(settlements().size(), 1); // what comes later is no part of the start
}

TEST_F(StoreSettlement, aProfileThatFailsHasSettledWithAWarning)
{
    profilesAre(u"Starting"_s);
    start();
    profilesAre(u"NeedsLogin"_s);
    world.run(2s);
    ASSERT_EQ(settlements().size(), 1);
    EXPECT_TRUE(settlements().first().message.contains(u" outcome=settled duration_ms=2000 "_s));
    EXPECT_TRUE(settlements().first().message.contains(u" profiles_failed=1 "_s));
    EXPECT_EQ(settlements().first().level, u"warn"_s);
}

TEST_F(StoreSettlement, aFailedTunnelMakesItAWarningToo)
{
    profilesAre(u"Starting"_s);
    start();
    service->tunnels.answer({tunnel(u"db"_s, u"error"_s)});
    profilesAre(u"Running"_s, true);
    world.run(2s);
    ASSERT_EQ(settlements().size(), 1);
    EXPECT_EQ(settlements().first().level, u"warn"_s);
}

TEST_F(StoreSettlement, aServiceThatIsLostMeanwhileTimesOutAsAnError)
{
    profilesAre(u"Starting"_s);
    start();
    service->profiles.fail(unavailable());
    world.run(65s);
    ASSERT_EQ(settlements().size(), 1);
    EXPECT_TRUE(settlements().first().message.contains(u" outcome=timeout duration_ms=65000 service=error "_s));
}

TEST_F(StoreSettlement, aStartThatFailsIsAWarningAndAwaitsNothing)
{
    service->health.answer(false);
    service->profiles.fail(unavailable());
    start();
    EXPECT_TRUE(summaries().isEmpty());
    world.run(30s);
    ASSERT_EQ(summaries().size(), 1);
    EXPECT_EQ(summaries().first().level, u"warn"_s);
    EXPECT_TRUE(summaries().first().message.startsWith(u"[APP] startup summary: service=error profiles_ready=0 "_s));
    EXPECT_EQ(store->serviceState(), ServiceState::error(unavailable().localizedDescription())); // the refresh's words
    world.run(1h);
    EXPECT_TRUE(settlements().isEmpty());
}

TEST_F(StoreSettlement, aQuitMeanwhileTellsNothing)
{
    profilesAre(u"Starting"_s);
    start();
    scope.start(store->quitAndShutdown());
    world.run(2min);
    EXPECT_TRUE(settlements().isEmpty());
}

TEST_F(StoreSettlement, theLastWordMeanwhileTellsNothing)
{
    profilesAre(u"Starting"_s);
    start();
    store->shutdown();
    world.run(2min);
    EXPECT_TRUE(settlements().isEmpty());
}

TEST_F(StoreSettlement, aQuitDuringTheStartEndsIt)
{
    service->health.answer(false);
    start();
    scope.start(store->quitAndShutdown());
    world.run(2min);
    EXPECT_TRUE(summaries().isEmpty());
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
}
