#include "Tests/Base/Jobs/JobOwner.h"

using namespace jobs;

TEST(Clock, EqualDeadlinesRingInTheOrderTheyWereArmed)
{
    World w;
    JobOwner o(w);
    struct L {
        static Async<> go(JobOwner *o, std::string n, Clock::Duration d)
        {
            co_await sleep(d);
            o->note(n);
        }
    };
    o.jobs.start(L::go(&o, "a", 2s));
    o.jobs.start(L::go(&o, "b", 1s));
    o.jobs.start(L::go(&o, "c", 2s));
    o.jobs.start(L::go(&o, "d", 1s));
    w.run(3s);
    EXPECT_EQ(o.log, (Notes{"b@10", "d@10", "a@20", "c@20"}));
    EXPECT_EQ(w.clock.rings, 4);
}

TEST(Clock, ASleepBeyondTheEndOfTimeNeitherWrapsNorRings)
{
    struct L {
        static Async<> go(JobOwner *o, Clock::Duration wait)
        {
            co_await sleep(wait);
            o->note("woke");
        }
    };
    World w;
    JobOwner o(w);
    w.run(1s);
    o.jobs.start(L::go(&o, Clock::Duration::max()));
    w.run(24h * 365);
    EXPECT_TRUE(o.log.empty());
    o.log.clear();
    o.jobs.start(L::go(&o, Clock::Duration::min()));
    w.run();
    EXPECT_EQ(o.log.size(), 1u); // a negative wait is over at once
}

TEST(Clock, OnlyTheJobsThatWaitCostAWakeUp)
{
    World w;
    JobOwner o(w);
    auto cancelled = o.jobs.start(o.twoSleeps());
    o.jobs.start(o.slowAnswer(1, 60s));
    w.run(1s);
    cancelled.cancel();
    w.run(1h);
    EXPECT_EQ(w.clock.rings, 1);
    EXPECT_EQ(w.seconds(), 3601);
}
