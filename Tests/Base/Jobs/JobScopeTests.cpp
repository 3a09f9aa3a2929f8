#include "Tests/Base/Jobs/JobOwner.h"
#include <memory>

using namespace jobs;

TEST(JobScope, DoesNothingOnceItsOwnerIsGone)
{
    World w;
    int ran = 0, unwound = 0;
    struct L {
        static Async<> go(int *ran, int *unwound)
        {
            const auto g = qScopeGuard([unwound] { ++*unwound; });
            co_await sleep(1s);
            ++*ran;
        }
        static Async<> outer(int *ran, int *unwound)
        {
            const auto g = qScopeGuard([unwound] { ++*unwound; });
            co_await go(ran, unwound);
            ++*ran;
        }
    };
    Job<> sleeping, queued, fresh;
    {
        JobOwner o(w);
        sleeping = o.jobs.start(L::outer(&ran, &unwound));
        queued = o.jobs.start(L::go(&ran, &unwound));
        w.run(500ms);
        fresh = o.jobs.start(L::go(&ran, &unwound));
        EXPECT_EQ(o.jobs.running(), 3u);
    }
    w.run(10s);
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(unwound, 3); // the two started ones; the fresh one had no guard yet
    EXPECT_TRUE(sleeping.abandoned() && queued.abandoned() && fresh.abandoned());
    EXPECT_EQ(w.clock.rings, 0);
}

TEST(JobScope, WhoWaitsForAnAbandonedJobIsTold)
{
    World w;
    JobOwner waiter(w);
    auto owner = std::make_unique<JobOwner>(w);
    struct L {
        static Async<> wait(JobOwner *me, Job<int> j)
        {
            try {
                const int n = co_await j;
                me->note(std::to_string(n));
            } catch (const JobAbandoned &) {
                me->note("abandoned");
            }
        }
        static Async<> waitQuietly(JobOwner *me, Job<int> j)
        {
            co_await j;
            me->note("never");
        }
    };
    auto j = owner->jobs.start(owner->launch());
    waiter.jobs.start(L::wait(&waiter, j));
    auto quiet = waiter.jobs.start(L::waitQuietly(&waiter, j));
    w.run(1s);
    owner.reset();
    w.run(1s);
    EXPECT_EQ(waiter.log, (Notes{"abandoned@10"}));
    EXPECT_TRUE(quiet.finished());
    EXPECT_EQ(waiter.jobs.running(), 0u);
}

TEST(JobScope, TheOwnerMayDieInsideAnotherJob)
{
    World w;
    JobOwner killer(w);
    auto victim = std::make_unique<JobOwner>(w);
    struct L {
        static Async<> kill(std::unique_ptr<JobOwner> *p)
        {
            co_await sleep(1s);
            p->reset();
        }
    };
    auto j = victim->jobs.start(victim->twoSleeps());
    killer.jobs.start(L::kill(&victim));
    w.run(60s);
    EXPECT_TRUE(j.abandoned());
}

TEST(JobScope, TheOwnerMayEvenDieInsideItsOwnJob) // discouraged, but it must not crash
{
    World w;
    auto o = std::make_unique<JobOwner>(w);
    int after = 0;
    struct L {
        static Async<> suicide(std::unique_ptr<JobOwner> *p, int *after)
        {
            co_await sleep(1s);
            p->reset();
            ++*after;
            co_await sleep(1s);
            *after += 100;
        }
    };
    auto j = o->jobs.start(L::suicide(&o, &after));
    w.run(60s);
    EXPECT_EQ(after, 1);
    EXPECT_TRUE(j.abandoned());
}

TEST(JobScope, WhatAnUnwindingFrameStartsNeverRuns)
{
    World w;
    int ran = 0;
    Job<> late;
    struct L {
        static Async<> never(int *ran)
        {
            ++*ran;
            co_return;
        }
        static Async<> startsAtItsEnd(JobOwner *o, Job<> *late, int *ran)
        {
            const auto atEnd = qScopeGuard([=] { *late = o->jobs.start(never(ran)); });
            co_await sleep(1s);
        }
    };
    {
        JobOwner o(w);
        o.jobs.start(L::startsAtItsEnd(&o, &late, &ran));
        w.run();
    }
    w.run(5s);
    EXPECT_TRUE(late.abandoned());
    EXPECT_EQ(ran, 0);
}

TEST(JobScope, CancelsAllItsJobs)
{
    World w;
    JobOwner o(w);
    JobOwner other(w);
    o.jobs.start(o.twoSleeps());
    o.jobs.start(o.twoSleeps());
    auto untouched = other.jobs.start(other.twoSleeps());
    w.run(1s);
    o.jobs.cancelAll();
    w.run(1s);
    EXPECT_EQ(o.jobs.running(), 0u);
    EXPECT_TRUE(untouched.running());
    EXPECT_FALSE(untouched.cancelRequested());
}
