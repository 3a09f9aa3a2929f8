#include "Tests/Base/Jobs/JobOwner.h"

using namespace jobs;

TEST(Cancel, CancelledSleepEndsEarlyAndTheJobGoesOn)
{
    World w;
    JobOwner o(w);
    auto j = o.jobs.start(o.twoSleeps());
    w.run(4s);
    j.cancel();
    j.cancel(); // a second one does nothing
    w.run(1s);
    EXPECT_EQ(o.log, (Notes{"begin@0", "cut@40", "sees cancel@40", "cut@40", "end@40"}));
    EXPECT_TRUE(j.finished());
}

TEST(Cancel, CancelBeforeTheFirstStepStillRunsTheJob)
{
    World w;
    JobOwner o(w);
    auto j = o.jobs.start(o.twoSleeps());
    j.cancel();
    w.run();
    EXPECT_EQ(o.log.size(), 5u);
    EXPECT_TRUE(j.finished());
}

TEST(Cancel, ACancelledLoopThatIgnoresItDoesNotBlockTheThread)
{
    World w;
    JobOwner o(w);
    int rounds = 0, other = 0;
    struct L {
        static Async<> stubborn(int *n)
        {
            for (; *n < 1000; ++*n)
                co_await sleep(1h);
        }
        static Async<> polite(int *n, int *rounds)
        {
            co_await yield();
            *n = *rounds;
        }
    };
    auto j = o.jobs.start(L::stubborn(&rounds));
    j.cancel();
    o.jobs.start(L::polite(&other, &rounds));
    w.run();
    EXPECT_EQ(rounds, 1000);
    EXPECT_LT(other, 3); // the other job got its turn in between
}

TEST(Cancel, AWaiterThatIsCancelledKeepsWaitingAndTheSharedJobIsNotCancelled)
{
    World w;
    JobOwner o(w);
    auto a = o.jobs.start(o.wantsLaunch("a"));
    o.jobs.start(o.wantsLaunch("b"));
    w.run(1s);
    a.cancel();
    w.run(5s);
    EXPECT_EQ(o.log, (Notes{"a7@30", "b7@30"}));
}
