#include "Tests/API/ApiClientTest.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// A cache whose fetches take three seconds, count themselves, and note the ambient text.
class ConfigCache : public testing::Test {
protected:
    VeranoxAPICall<QByteArray> fetch()
    {
        const int number = ++fetches;
        correlations.append(jobs::ambient().value_or(u"none"_s));
        cancelled = cancelled || co_await jobs::sleep(3s) == jobs::Sleep::cut;
        if (failing)
            co_return std::unexpected(VeranoxAPIFailure::unavailable());
        co_return QByteArray::number(number);
    }
    jobs::Async<> read(QByteArray *into)
    {
        const auto result = co_await cache.data();
        if (result)
            *into = *result;
        else
            *into = result.error().isCancellation() ? "cancelled" : "failed";
    }
    jobs::Async<> invalidate()
    {
        cache.invalidate();
        co_return;
    }
    QByteArray readNow()
    {
        QByteArray result;
        scope.start(read(&result));
        world.run();
        if (result.isEmpty()) // it was not kept
            world.run(3s);
        return result;
    }

    jobs::World world;
    int fetches = 0;
    bool failing = false;
    bool cancelled = false;
    QStringList correlations;
    VeranoxConfigCache cache{world.queue, [this] { return fetch(); }};
    jobs::JobScope scope{world.queue};
};

} // namespace

TEST_F(ConfigCache, ConcurrentReadersShareOneFetch)
{
    QByteArray first, second, third;
    scope.start(read(&first));
    scope.start(read(&second));
    world.run(2s);
    scope.start(read(&third));
    world.run(999ms);
    EXPECT_EQ(first + second + third, "");
    world.run(1ms);
    EXPECT_EQ(first + second + third, "111");
    EXPECT_EQ(fetches, 1);
}

TEST_F(ConfigCache, AnEntryIsStaleAtExactlyTwoSeconds)
{
    EXPECT_EQ(readNow(), "1");
    world.run(2s - 1ns);
    QByteArray result;
    scope.start(read(&result));
    world.run();
    EXPECT_EQ(result, "1");
    world.run(1ns);
    scope.start(read(&result));
    world.run();
    EXPECT_EQ(fetches, 2);
}

TEST_F(ConfigCache, TheAgeOfAnEntryCountsFromItsArrival)
{
    EXPECT_EQ(readNow(), "1"); // 3 s after it was asked for
    world.run(1s);
    EXPECT_EQ(readNow(), "1");
    EXPECT_EQ(fetches, 1);
}

TEST_F(ConfigCache, AFailureReachesEveryWaiterAndIsNotKept)
{
    failing = true;
    QByteArray first, second;
    scope.start(read(&first));
    scope.start(read(&second));
    world.run(3s);
    EXPECT_EQ(first, "failed");
    EXPECT_EQ(second, "failed");
    failing = false;
    EXPECT_EQ(readNow(), "2");
}

TEST_F(ConfigCache, AFailedFetchLeavesAStaleEntryStale)
{
    EXPECT_EQ(readNow(), "1");
    world.run(5s);
    failing = true;
    EXPECT_EQ(readNow(), "failed");
    failing = false;
    EXPECT_EQ(readNow(), "3");
}

TEST_F(ConfigCache, InvalidationDropsTheEntry)
{
    EXPECT_EQ(readNow(), "1");
    cache.invalidate();
    EXPECT_EQ(readNow(), "2");
}

TEST_F(ConfigCache, AFetchBegunBeforeAnInvalidationServesItsWaitersOnly)
{
    QByteArray before, after;
    scope.start(read(&before));
    world.run(1s);
    cache.invalidate();
    world.run(1ms);
    scope.start(read(&after));
    world.run();
    EXPECT_EQ(fetches, 2);
    world.run(2s);
    EXPECT_EQ(before, "1");
    EXPECT_EQ(after, "");
    QByteArray joined; // the end of the first fetch left the second one in its place
    scope.start(read(&joined));
    world.run(1001ms);
    EXPECT_EQ(after, "2");
    EXPECT_EQ(joined, "2");
    EXPECT_EQ(readNow(), "2");
    EXPECT_EQ(fetches, 2);
}

TEST_F(ConfigCache, AnInvalidationRightAfterTheReadIsNotLost)
{
    QByteArray early;
    scope.start(read(&early));
    scope.start(invalidate()); // its turn comes before that of the fetch, which the reader starts
    world.run(3s);
    EXPECT_EQ(early, "1");
    EXPECT_EQ(readNow(), "2");
}

TEST_F(ConfigCache, ACancelledWaiterLeavesAtOnceAndTheFetchGoesOnForTheOthers)
{
    QByteArray starter, waiter, other;
    const auto a = scope.start(read(&starter));
    const auto b = scope.start(read(&waiter));
    scope.start(read(&other));
    world.run(1s);
    a.cancel();
    b.cancel();
    world.run();
    EXPECT_EQ(starter, "cancelled");
    EXPECT_EQ(waiter, "cancelled");
    EXPECT_EQ(other, "");
    world.run(2s);
    EXPECT_FALSE(cancelled);
    EXPECT_EQ(other, "1");
    EXPECT_EQ(fetches, 1);
}

TEST_F(ConfigCache, AFetchThatEveryoneHasLeftIsKeptAllTheSame)
{
    QByteArray starter;
    const auto job = scope.start(read(&starter));
    world.run(1s);
    job.cancel();
    world.run(2s);
    EXPECT_EQ(starter, "cancelled");
    EXPECT_EQ(readNow(), "1");
    EXPECT_EQ(fetches, 1);
}

TEST_F(ConfigCache, WhoIsCancelledBeforeAskingAsksNothing)
{
    QByteArray result;
    scope.start(read(&result)).cancel();
    world.run(5s);
    EXPECT_EQ(result, "cancelled");
    EXPECT_EQ(fetches, 0);
}

TEST_F(ConfigCache, AStarterThatIsDestroyedLeavesTheFetchToTheOthers)
{
    QByteArray starter, other;
    {
        jobs::JobScope owner(world.queue);
        owner.start(read(&starter));
        world.run(1s);
        scope.start(read(&other));
        world.run(1s);
    }
    world.run(1s);
    EXPECT_EQ(other, "1");
    world.run(5s);
    EXPECT_EQ(readNow(), "2");
}

TEST_F(ConfigCache, TheFetchKeepsTheAmbientTextOfItsStarter)
{
    QByteArray first, second;
    {
        const jobs::AmbientScope refresh(u"refresh"_s);
        scope.start(read(&first));
    }
    {
        const jobs::AmbientScope other(u"other"_s);
        scope.start(read(&second));
    }
    world.run(3s);
    EXPECT_EQ(correlations, QStringList{u"refresh"_s});
}

using ConfigInvalidation = ConfigCache;

TEST_F(ConfigInvalidation, TableOfTheWrites)
{
    using enum VeranoxConfigInvalidation;
    using Write = VeranoxAPIWrite;
    const std::pair<Write, VeranoxConfigInvalidation> table[] = {
        {Write::saveConfig, beforeAndOnSuccess},
        {Write::saveTunnel, beforeAndAfter},
        {Write::deleteTunnel, beforeAndAfter},
        {Write::startTunnel, beforeAndAfter},
        {Write::stopTunnel, beforeAndAfter},
        {Write::savePublication, beforeAndAfter},
        {Write::deletePublication, beforeAndAfter},
        {Write::startPublication, beforeAndAfter},
        {Write::stopPublication, beforeAndAfter},
        {Write::restartTunnel, never},
        {Write::restartPublication, never},
        {Write::setTunnelSecret, never},
        {Write::login, never},
        {Write::logout, never},
        {Write::shutdown, never},
        {Write::submitFeedback, never},
    };
    for (const auto &[write, rule] : table)
        EXPECT_EQ(configInvalidation(write), rule) << static_cast<int>(write);
}

TEST_F(ConfigInvalidation, EachRuleRoundAWrite)
{
    using enum VeranoxConfigInvalidation;
    struct Case {
        VeranoxConfigInvalidation rule;
        bool succeeds, clearsBefore, clearsAfter;
    };
    const Case cases[] = {
        {never, false, false, false},
        {never, true, false, false},
        {beforeAndOnSuccess, false, true, false},
        {beforeAndOnSuccess, true, true, true},
        {beforeAndAfter, false, true, true},
        {beforeAndAfter, true, true, true},
    };
    for (const Case &c : cases) {
        cache.invalidate();
        readNow();
        const int kept = fetches;
        {
            VeranoxConfigInvalidationScope round(cache, c.rule);
            readNow();
            EXPECT_EQ(fetches, kept + c.clearsBefore);
            if (c.succeeds)
                round.succeed();
        }
        readNow();
        EXPECT_EQ(fetches, kept + c.clearsBefore + c.clearsAfter);
    }
}
