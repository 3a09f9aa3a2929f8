#include "Tests/Base/Jobs/JobOwner.h"
#include <memory>
#include <stdexcept>
#include <vector>

using namespace jobs;

TEST(Completion, ACompletionIsResolvedOnceAndADroppedResolverFails)
{
    World w;
    JobOwner o(w);
    std::vector<Resolver<int>> held;
    struct L {
        static Async<> go(JobOwner *o, std::vector<Resolver<int>> *held)
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
    EXPECT_EQ(o.log, (Notes{"got4@10", "dropped@10"}));
}

TEST(Completion, ACancelledJobTellsTheCalleeAndGoesOnWaiting)
{
    struct L {
        static Async<> go(JobOwner *o, std::vector<Resolver<int>> *held)
        {
            Completion<int> answer(o->jobs.queue());
            held->push_back(answer.resolver());
            const int n = co_await answer;
            o->note(std::to_string(n));
        }
    };
    World w;
    JobOwner o(w);
    std::vector<Resolver<int>> held;
    auto job = o.jobs.start(L::go(&o, &held));
    w.run(1s);
    EXPECT_FALSE(held[0].stopToken().stop_requested());
    job.cancel();
    w.run(1s);
    EXPECT_TRUE(held[0].stopToken().stop_requested());
    EXPECT_TRUE(job.running());
    held[0].resolve(6);
    w.run();
    EXPECT_EQ(o.log, (Notes{"6@20"}));
}

TEST(Completion, TheCalleeIsToldWhenTheWaitingJobIsGone)
{
    struct L {
        static Async<> go(JobOwner *o, std::vector<Resolver<>> *held)
        {
            Completion<> answer(o->jobs.queue());
            held->push_back(answer.resolver());
            co_await answer;
            o->note("never");
        }
    };
    World w;
    std::vector<Resolver<>> held;
    {
        JobOwner o(w);
        o.jobs.start(L::go(&o, &held));
        w.run();
    }
    EXPECT_TRUE(held[0].stopToken().stop_requested());
    held[0].resolve(); // late, and harmless
    w.run();
    EXPECT_TRUE(w.queue.idle());
}

TEST(Completion, AnAnswerThatThrowsWhileItIsMadeLeavesTheQuestionOpen)
{
    struct Picky {
        explicit Picky(int n) : value(n)
        {
            if (n < 0)
                throw std::invalid_argument("negative");
        }
        int value;
    };
    struct L {
        static Async<> go(JobOwner *o, std::vector<Resolver<Picky>> *held)
        {
            Completion<Picky> answer(o->jobs.queue());
            held->push_back(answer.resolver());
            const Picky got = co_await answer;
            o->note(std::to_string(got.value));
        }
    };
    World w;
    JobOwner o(w);
    std::vector<Resolver<Picky>> held;
    o.jobs.start(L::go(&o, &held));
    w.run();
    EXPECT_THROW(held[0].resolve(-1), std::invalid_argument);
    held[0].resolve(2);
    w.run();
    EXPECT_EQ(o.log, (Notes{"2@0"}));
}

TEST(Completion, AnAnswerAfterTheQueueIsGoneIsDropped)
{
    auto dropped = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = dropped;
    std::vector<Resolver<std::shared_ptr<int>>> held;
    {
        World w;
        const Completion<std::shared_ptr<int>> answer(w.queue);
        held.push_back(answer.resolver());
    }
    held[0].resolve(std::move(dropped));
    held.clear();
    EXPECT_TRUE(watch.expired());
}
