#include "Tests/Base/Jobs/JobOwner.h"
#include <QCoreApplication>
#include <QTimer>
#include <memory>
#include <stdexcept>

using namespace jobs;

TEST(Job, StartsLaterThanItsStarterAndInOrder)
{
    World w;
    JobOwner o(w);
    struct L {
        static Async<> go(JobOwner *o, std::string s)
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
    EXPECT_EQ(o.log, (Notes{"a@0", "b@0"}));
    EXPECT_TRUE(a.finished() && b.finished());
    EXPECT_EQ(o.jobs.running(), 0u);
}

TEST(Job, SeveralWaitersShareOneRunningJob)
{
    World w;
    JobOwner o(w);
    o.jobs.start(o.wantsLaunch("a"));
    o.jobs.start(o.wantsLaunch("b"));
    w.run(2s);
    o.jobs.start(o.wantsLaunch("c"));
    w.run(2s);
    EXPECT_EQ(o.launches, 1);
    EXPECT_EQ(o.log, (Notes{"a7@30", "b7@30", "c7@30"}));
    o.jobs.start(o.wantsLaunch("d"));
    w.run(4s);
    EXPECT_EQ(o.launches, 2);
}

TEST(Job, ExceptionsReachEveryWaiter)
{
    World w;
    JobOwner o(w);
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
        static Async<> wait(JobOwner *o, Job<int> j)
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
    EXPECT_EQ(o.log, (Notes{"boom@10", "boom@10", "after@20", "after@20"}));
}

TEST(Job, MoveOnlyResultsAndDeepChains)
{
    World w;
    JobOwner o(w);
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
        static Async<> go(JobOwner *o)
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
    EXPECT_EQ(o.log, (Notes{"510002@0"}));
}

TEST(Job, TakesAggregatesByValue)
{
    struct Record {
        std::string name;
        std::vector<int> numbers;
    };
    struct L {
        static Async<Record> grown(Record record)
        {
            co_await yield();
            record.numbers.push_back(3);
            co_return record;
        }
        static Async<> go(JobOwner *o)
        {
            const Record made = co_await grown({.name = "a name longer than the small string", .numbers = {1, 2}});
            o->note(made.name + std::to_string(made.numbers.size()));
        }
    };
    World w;
    JobOwner o(w);
    o.jobs.start(L::go(&o));
    w.run();
    EXPECT_EQ(o.log, (Notes{"a name longer than the small string3@0"}));
}

namespace {
Notes g_messages;
void collectMessage(QtMsgType type, const QMessageLogContext & /*where*/, const QString &text)
{
    if (type == QtCriticalMsg)
        g_messages.push_back(text.toStdString());
}
} // namespace

TEST(Job, AnErrorThatNobodyCollectsIsLogged)
{
    struct L {
        static Async<> fail()
        {
            throw std::runtime_error("disk full");
            co_return;
        }
    };
    World w;
    JobOwner o(w);
    const auto before = qInstallMessageHandler(collectMessage);
    o.jobs.start(L::fail());
    w.run();
    qInstallMessageHandler(before);
    EXPECT_EQ(g_messages, (Notes{"a job failed and nobody asked: disk full"}));
}

TEST(Job, ManyReadyJobsLetTheEventLoopThrough)
{
    struct L {
        static Async<> spin(const bool *enough)
        {
            while (!*enough)
                co_await yield();
        }
    };
    SystemClock clock;
    MainQueue queue(clock);
    bool enough = false;
    JobScope jobs(queue);
    auto job = jobs.start(L::spin(&enough));
    QTimer::singleShot(0, qApp, [&enough] { enough = true; });
    while (job.running())
        QCoreApplication::processEvents(); // hangs if the queue never gives the thread back
    EXPECT_TRUE(job.finished());
}
