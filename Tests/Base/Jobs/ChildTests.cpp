#include "Tests/Base/Jobs/JobOwner.h"

using namespace jobs;

TEST(Child, ChildrenRunTogetherAndAreTakenInOrder)
{
    World w;
    JobOwner o(w);
    struct L {
        static Async<> all(JobOwner *o)
        {
            auto a = fork(o->slowAnswer(1, 3s));
            auto b = fork(o->slowAnswer(2, 1s));
            auto c = fork(o->slowAnswer(3, 2s));
            const int x = co_await a;
            const int y = co_await b;
            const int z = co_await c;
            o->note(std::to_string(x * 100 + y * 10 + z));
        }
    };
    o.jobs.start(L::all(&o));
    w.run(10s);
    EXPECT_EQ(o.log, (Notes{"123@30"})); // 3 s, not 6
}

TEST(Child, CancelReachesTheChildrenAndAChildDiesWithItsVariable)
{
    World w;
    JobOwner o(w);
    int unwound = 0;
    struct L {
        static Async<int> child(JobOwner *o, int *unwound)
        {
            const auto g = qScopeGuard([unwound] { ++*unwound; });
            const Sleep s = co_await sleep(100s);
            o->note(s == Sleep::cut ? "cut" : "full");
            co_return 1;
        }
        static Async<> parent(JobOwner *o, int *unwound)
        {
            auto a = fork(child(o, unwound));
            {
                auto b = fork(child(o, unwound));
                co_await sleep(1s);
            } // b is destroyed here, unfinished
            o->note("b gone " + std::to_string(*unwound));
            co_await a;
            o->note("end");
        }
    };
    auto j = o.jobs.start(L::parent(&o, &unwound));
    w.run(5s);
    j.cancel();
    w.run(1s);
    EXPECT_EQ(o.log, (Notes{"b gone 1@10", "cut@50", "end@50"}));
    EXPECT_EQ(unwound, 2);
}

TEST(Child, ATimeLimitCancelsAChild)
{
    World w;
    JobOwner o(w);
    struct L {
        static Async<> go(JobOwner *o)
        {
            auto slow = fork(o->slowAnswer(5, 100s));
            const CancelAfter limit(slow, 2s);
            const int n = co_await slow;
            o->note((limit.expired() ? "late" : "in time") + std::to_string(n));
        }
    };
    o.jobs.start(L::go(&o));
    w.run(10s);
    EXPECT_EQ(o.log, (Notes{"late5@20"}));
}

TEST(Child, OneThatWasMovedOutOfItsParentOutlivesIt)
{
    World w;
    JobOwner o(w);
    std::vector<Child<int>> kept;
    struct L {
        static Async<> parent(JobOwner *o, std::vector<Child<int>> *kept)
        {
            kept->push_back(fork(o->slowAnswer(5, 3s)));
            co_return;
        }
        static Async<> collect(JobOwner *o, std::vector<Child<int>> *kept)
        {
            const int n = co_await kept->front();
            o->note(std::to_string(n));
        }
    };
    auto parent = o.jobs.start(L::parent(&o, &kept));
    w.run(1s);
    EXPECT_TRUE(parent.finished());
    ASSERT_EQ(kept.size(), 1u);
    o.jobs.start(L::collect(&o, &kept));
    w.run(5s);
    EXPECT_EQ(o.log, (Notes{"5@30"}));
}

TEST(Child, AForkInACancelledJobIsCancelledFromItsFirstStep)
{
    World w;
    JobOwner o(w);
    struct L {
        static Async<> child(JobOwner *o)
        {
            o->note(this_job::cancelled() ? "cancelled" : "not");
            co_return;
        }
        static Async<> parent(JobOwner *o)
        {
            auto c = fork(child(o));
            co_await c;
        }
    };
    o.jobs.start(L::parent(&o)).cancel();
    w.run();
    EXPECT_EQ(o.log, (Notes{"cancelled@0"}));
}
