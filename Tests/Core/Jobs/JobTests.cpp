#include "Core/Jobs/Jobs.h"
#include "Tests/Support/VirtualTime.h"
#include <QScopeGuard>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using namespace jobs;

namespace {

struct Owner { // an object with jobs; not copyable because of its scope
    explicit Owner(World &w) : world(w), jobs(w.queue) { }
    void note(const std::string &s) { log.push_back(s + "@" + std::to_string(static_cast<int>(world.seconds() * 10))); }
    World &world;
    std::vector<std::string> log;
    int launches = 0;
    Job<int> shared;

    Async<int> answer(int n) { co_return n; }
    Async<int> slowAnswer(int n, Clock::Duration d)
    {
        co_await sleep(d);
        co_return n;
    }
    Async<> twoSleeps()
    {
        note("begin");
        const Sleep a = co_await sleep(10s);
        note(a == Sleep::Cut ? "cut" : "full");
        note(this_job::cancelled() ? "sees cancel" : "no cancel");
        const Sleep b = co_await sleep(10s);
        note(b == Sleep::Cut ? "cut" : "full");
        note("end");
    }
    Job<int> ensure()
    {
        if (!shared.running())
            shared = jobs.start(launch());
        return shared;
    }
    Async<int> launch()
    {
        ++launches;
        co_await sleep(3s);
        co_return 7;
    }
    Async<> wantsLaunch(std::string name)
    {
        const int r = co_await ensure();
        note(name + std::to_string(r));
    }
    JobScope jobs; // last
};

} // namespace

TEST(Job, StartsLaterThanItsStarterAndInOrder)
{
    World w;
    Owner o(w);
    struct L {
        static Async<> go(Owner *o, std::string s)
        {
            o->note(s);
            co_return;
        }
    };
    auto a = o.jobs.start(L::go(&o, "a"));
    auto b = o.jobs.start(L::go(&o, "b"));
    EXPECT_TRUE(o.log.empty());
    EXPECT_TRUE(a.running());
    w.run();
    EXPECT_EQ(o.log, (std::vector<std::string>{"a@0", "b@0"}));
    EXPECT_TRUE(a.finished() && b.finished());
    EXPECT_EQ(o.jobs.running(), 0u);
}

TEST(Job, CancelledSleepEndsEarlyAndTheJobGoesOn)
{
    World w;
    Owner o(w);
    auto j = o.jobs.start(o.twoSleeps());
    w.run(4s);
    j.cancel();
    j.cancel(); // a second one does nothing
    w.run(1s);
    EXPECT_EQ(o.log, (std::vector<std::string>{"begin@0", "cut@40", "sees cancel@40", "cut@40", "end@40"}));
    EXPECT_TRUE(j.finished());
}

TEST(Job, CancelBeforeTheFirstStepStillRunsTheJob)
{
    World w;
    Owner o(w);
    auto j = o.jobs.start(o.twoSleeps());
    j.cancel();
    w.run();
    EXPECT_EQ(o.log.size(), 5u);
    EXPECT_TRUE(j.finished());
}

TEST(Job, ACancelledLoopThatIgnoresItDoesNotBlockTheThread)
{
    World w;
    Owner o(w);
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

TEST(Job, SeveralWaitersShareOneRunningJob)
{
    World w;
    Owner o(w);
    o.jobs.start(o.wantsLaunch("a"));
    o.jobs.start(o.wantsLaunch("b"));
    w.run(2s);
    o.jobs.start(o.wantsLaunch("c"));
    w.run(2s);
    EXPECT_EQ(o.launches, 1);
    EXPECT_EQ(o.log, (std::vector<std::string>{"a7@30", "b7@30", "c7@30"}));
    o.jobs.start(o.wantsLaunch("d"));
    w.run(4s);
    EXPECT_EQ(o.launches, 2);
}

TEST(Job, AWaiterThatIsCancelledKeepsWaitingAndTheSharedJobIsNotCancelled)
{
    World w;
    Owner o(w);
    auto a = o.jobs.start(o.wantsLaunch("a"));
    o.jobs.start(o.wantsLaunch("b"));
    w.run(1s);
    a.cancel();
    w.run(5s);
    EXPECT_EQ(o.log, (std::vector<std::string>{"a7@30", "b7@30"}));
}

TEST(Job, DoesNothingOnceItsOwnerIsGone)
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
        Owner o(w);
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

TEST(Job, WhoWaitsForAnAbandonedJobIsTold)
{
    World w;
    Owner waiter(w);
    auto owner = std::make_unique<Owner>(w);
    struct L {
        static Async<> wait(Owner *me, Job<int> j)
        {
            try {
                const int n = co_await j;
                me->note(std::to_string(n));
            } catch (const JobAbandoned &) {
                me->note("abandoned");
            }
        }
        static Async<> waitQuietly(Owner *me, Job<int> j)
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
    EXPECT_EQ(waiter.log, (std::vector<std::string>{"abandoned@10"}));
    EXPECT_TRUE(quiet.finished());
    EXPECT_EQ(waiter.jobs.running(), 0u);
}

TEST(Job, TheOwnerMayDieInsideAnotherJob)
{
    World w;
    Owner killer(w);
    auto victim = std::make_unique<Owner>(w);
    struct L {
        static Async<> kill(std::unique_ptr<Owner> *p)
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

TEST(Job, TheOwnerMayEvenDieInsideItsOwnJob) // discouraged, but it must not crash
{
    World w;
    auto o = std::make_unique<Owner>(w);
    int after = 0;
    struct L {
        static Async<> suicide(std::unique_ptr<Owner> *p, int *after)
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

TEST(Job, ExceptionsReachEveryWaiter)
{
    World w;
    Owner o(w);
    struct L {
        static Async<int> fail()
        {
            co_await sleep(1s);
            throw std::runtime_error("boom");
            co_return 1;
        }
        static Async<int> through()
        {
            const int n = co_await fail();
            co_return n;
        }
        static Async<> wait(Owner *o, Job<int> j)
        {
            try {
                co_await j;
            } catch (const std::runtime_error &e) {
                o->note(e.what());
            }
            co_await sleep(1s);
            o->note("after");
        }
    };
    auto j = o.jobs.start(L::through());
    o.jobs.start(L::wait(&o, j));
    o.jobs.start(L::wait(&o, j));
    w.run(5s);
    EXPECT_EQ(o.log, (std::vector<std::string>{"boom@10", "boom@10", "after@20", "after@20"}));
}

TEST(Job, AmbientTextIsInheritedFromTheStarter)
{
    World w;
    Owner o(w);
    std::vector<std::string> seen;
    struct L {
        static void see(std::vector<std::string> *s, const char *who)
        {
            const auto a = ambient();
            s->push_back(std::string(who) + "=" + (a ? a->toStdString() : "-"));
        }
        static Async<> leaf(std::vector<std::string> *s)
        {
            co_await sleep(2s);
            see(s, "leaf");
        }
        static Async<> child(std::vector<std::string> *s)
        {
            see(s, "child");
            co_await sleep(1s);
            see(s, "child");
        }
        static Async<> root(Owner *o, std::vector<std::string> *s)
        {
            see(s, "root");
            {
                const AmbientScope scope(u"inner"_s);
                auto c = fork(child(s));
                o->jobs.start(leaf(s)); // inherits "inner" for good
                co_await c;
                see(s, "root");
            }
            see(s, "root");
        }
    };
    {
        const AmbientScope scope(u"req-1"_s);
        o.jobs.start(L::root(&o, &seen));
    }
    EXPECT_FALSE(ambient());
    o.jobs.start(L::leaf(&seen)); // no text
    w.run(10s);
    EXPECT_FALSE(ambient());
    EXPECT_EQ(seen,
        (std::vector<std::string>{
            "root=req-1", "child=inner", "child=inner", "root=inner", "root=req-1", "leaf=-", "leaf=inner"}));
}

TEST(Job, ChildrenRunTogetherAndAreTakenInOrder)
{
    World w;
    Owner o(w);
    struct L {
        static Async<> all(Owner *o)
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
    EXPECT_EQ(o.log, (std::vector<std::string>{"123@30"})); // 3 s, not 6
}

TEST(Job, CancelReachesTheChildrenAndAChildDiesWithItsVariable)
{
    World w;
    Owner o(w);
    int unwound = 0;
    struct L {
        static Async<int> child(Owner *o, int *unwound)
        {
            const auto g = qScopeGuard([unwound] { ++*unwound; });
            const Sleep s = co_await sleep(100s);
            o->note(s == Sleep::Cut ? "cut" : "full");
            co_return 1;
        }
        static Async<> parent(Owner *o, int *unwound)
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
    EXPECT_EQ(o.log, (std::vector<std::string>{"b gone 1@10", "cut@50", "end@50"}));
    EXPECT_EQ(unwound, 2);
}

TEST(Job, ATimeLimitCancelsAChild)
{
    World w;
    Owner o(w);
    struct L {
        static Async<> go(Owner *o)
        {
            auto slow = fork(o->slowAnswer(5, 100s));
            const CancelAfter limit(slow, 2s);
            const int n = co_await slow;
            o->note((limit.expired() ? "late" : "in time") + std::to_string(n));
        }
    };
    o.jobs.start(L::go(&o));
    w.run(10s);
    EXPECT_EQ(o.log, (std::vector<std::string>{"late5@20"}));
}

TEST(Job, ACompletionIsResolvedOnceAndADroppedResolverFails)
{
    World w;
    Owner o(w);
    std::vector<Resolver<int>> held;
    struct L {
        static Async<> go(Owner *o, std::vector<Resolver<int>> *held)
        {
            Completion<int> c(o->jobs.queue());
            held->push_back(c.resolver());
            try {
                const int n = co_await c;
                o->note("got" + std::to_string(n));
            } catch (const ResolverDropped &) {
                o->note("dropped");
            }
        }
    };
    o.jobs.start(L::go(&o, &held));
    o.jobs.start(L::go(&o, &held));
    w.run(1s);
    held[0].resolve(4);
    held[0].resolve(5);
    held.clear();
    w.run(1s);
    EXPECT_EQ(o.log, (std::vector<std::string>{"got4@10", "dropped@10"}));
}

TEST(Job, MoveOnlyResultsAndDeepChains)
{
    World w;
    Owner o(w);
    struct L {
        static Async<std::unique_ptr<int>> make(int n) { co_return std::make_unique<int>(n); }
        static Async<std::unique_ptr<int>> twice()
        {
            co_await yield();
            co_return co_await make(2);
        }
        static Async<int> one(int i) { co_return i & 1; }
        static Async<int> recurse(int n)
        {
            if (n == 0)
                co_return 0;
            const int below = co_await recurse(n - 1);
            co_return below + 1;
        }
        static Async<> go(Owner *o)
        {
            auto child = fork(twice());
            const auto p = co_await child;
            int sum = *p;
            for (int i = 0; i < 1000000; ++i) { // no stack growth
                const int n = co_await one(i);
                sum += n;
            }
            const int depth = co_await recurse(10000);
            o->note(std::to_string(sum + depth));
        }
    };
    o.jobs.start(L::go(&o));
    w.run();
    EXPECT_EQ(o.log, (std::vector<std::string>{"510002@0"}));
}

TEST(Clock, EqualDeadlinesRingInTheOrderTheyWereArmed)
{
    World w;
    Owner o(w);
    struct L {
        static Async<> go(Owner *o, std::string n, Clock::Duration d)
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
    EXPECT_EQ(o.log, (std::vector<std::string>{"b@10", "d@10", "a@20", "c@20"}));
    EXPECT_EQ(w.clock.rings, 4);
}

// compile-time rules: each of these must not compile
template <class... A>
constexpr bool traitsOk = requires { typename std::coroutine_traits<Async<>, A...>::promise_type; };
static_assert(traitsOk<int, QString, Job<int>, std::unique_ptr<int>, Owner *>);
static_assert(traitsOk<Owner &, QString>);
