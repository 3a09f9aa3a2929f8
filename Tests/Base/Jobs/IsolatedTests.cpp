#include "Tests/Base/Jobs/JobOwner.h"
#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <latch>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace jobs;

namespace {
// A list of lines, and what became of it after its end.
class Lines {
public:
    explicit Lines(Notes *after, std::latch *ended = nullptr)
        : m_after(after),
          m_ended(ended),
          m_thread(QThread::currentThread())
    {
    }
    Lines(const Lines &) = delete;
    Lines &operator=(const Lines &) = delete;
    ~Lines()
    {
        m_lines.emplace_back(m_thread == QThread::currentThread() ? "died at home" : "died abroad");
        *m_after = m_lines;
        if (m_ended)
            m_ended->count_down();
    }
    void write(const std::string &text) { m_lines.push_back(ambient().value_or(u"-"_s).toStdString() + ": " + text); }
    std::size_t count() const { return m_lines.size(); }

private:
    Notes *m_after;
    std::latch *m_ended;
    QThread *m_thread;
    Notes m_lines;
};
} // namespace

TEST(Isolated, CallsKeepTheirOrderAndCarryTheAmbientText)
{
    struct L {
        static Async<> count(JobOwner *o, Isolated<Lines> *lines)
        {
            const std::size_t n = co_await lines->call([](const Lines &l) { return l.count(); });
            o->note(std::to_string(n));
        }
    };
    World w;
    JobOwner o(w);
    Notes after;
    {
        Isolated<Lines> lines(w.queue, {u"lines"_s}, &after);
        for (int i = 0; i < 200; ++i) {
            const AmbientScope id(u"r%1"_s.arg(i));
            lines.post([i](Lines &l) { l.write(std::to_string(i)); });
        }
        o.jobs.start(L::count(&o, &lines));
        w.run();
        EXPECT_EQ(o.log, (Notes{"200@0"}));
        lines.post([](Lines &l) { l.write("last"); });
    }
    ASSERT_EQ(after.size(), 202u);
    EXPECT_EQ(after[17], "r17: 17");
    EXPECT_EQ(after[200], "-: last"); // called before the end, so done before the end
    EXPECT_EQ(after[201], "died at home");
}

TEST(Isolated, ACallThatThrowsAndARequestThatIsDroppedReachTheJob)
{
    struct L {
        static Async<> go(JobOwner *o, Isolated<Lines> *lines)
        {
            try {
                co_await lines->call([](Lines &) { throw std::runtime_error("full"); });
            } catch (const std::runtime_error &e) {
                o->note(e.what());
            }
            try {
                co_await lines->request<int>([](Lines &, Resolver<int>) { });
            } catch (const ResolverDropped &) {
                o->note("dropped");
            }
            const int later = co_await lines->request<int>([](Lines &, Resolver<int> to) { to.resolve(8); });
            o->note(std::to_string(later));
        }
    };
    World w;
    JobOwner o(w);
    Notes after;
    Isolated<Lines> lines(w.queue, {u"lines"_s}, &after);
    o.jobs.start(L::go(&o, &lines));
    w.run();
    EXPECT_EQ(o.log, (Notes{"full@0", "dropped@0", "8@0"}));
}

TEST(Isolated, MayDieWhileAnAnswerIsOnItsWay)
{
    struct L {
        static Async<> go(JobOwner *o, Isolated<Lines> *lines)
        {
            const int n = co_await lines->call([](Lines &) {
                QThread::msleep(10);
                return 4;
            });
            o->note(std::to_string(n));
        }
    };
    World w;
    JobOwner o(w);
    Notes after;
    {
        Isolated<Lines> lines(w.queue, {u"lines"_s}, &after);
        auto job = o.jobs.start(L::go(&o, &lines));
        while (w.queue.inbox()->outstanding == 0)
            QCoreApplication::sendPostedEvents();
        EXPECT_TRUE(job.running());
    }
    w.run();
    EXPECT_EQ(o.log, (Notes{"4@0"}));
}

TEST(Isolated, IsLeftToItselfByAnEndThatHasWaitedLongEnough)
{
    struct L {
        static Async<> go(Isolated<Lines> *lines, std::latch *atWork, std::latch *release)
        {
            co_await lines->call([atWork, release](Lines &l) {
                atWork->count_down();
                release->wait();
                l.write("came back");
            });
        }
    };
    World w;
    std::latch atWork(1);
    std::latch release(1);
    std::latch ended(1);
    Notes after;
    QPointer<QThread> thread;
    {
        JobScope jobs(w.queue);
        Isolated<Lines> lines(w.queue, {.name = u"lines"_s, .patience = 1ms}, &after, &ended);
        thread = lines.context()->thread();
        jobs.start(L::go(&lines, &atWork, &release));
        while (!atWork.try_wait())
            QCoreApplication::sendPostedEvents();
    }
    EXPECT_FALSE(ended.try_wait()); // or we would still be waiting above
    release.count_down();
    ended.wait();
    EXPECT_EQ(after, (Notes{"-: came back", "died at home"}));
    while (thread) // it leaves nothing behind
        w.queue.settle();
}

TEST(Isolated, AnswersThatKeepComingDoNotKeepTheEventLoopFromItsTurn)
{
    struct L {
        static Async<> ask(Isolated<Lines> *lines, int *asked)
        {
            for (;; ++*asked)
                co_await lines->call([](const Lines &l) { return l.count(); });
        }
        static Async<> work(int steps) // each of about 10 microseconds
        {
            while (steps-- > 0) {
                const auto end = std::chrono::steady_clock::now() + 10us;
                while (std::chrono::steady_clock::now() < end) { }
                co_await yield();
            }
        }
    };
    SystemClock clock;
    MainQueue queue(clock);
    Notes after;
    int asked = 0;
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&turns] { ++turns; });
    timer.start(0);
    {
        Isolated<Lines> lines(queue, {u"lines"_s}, &after);
        JobScope jobs(queue);
        jobs.start(L::ask(&lines, &asked));
        const Job<> work = jobs.start(L::work(20'000)); // 200 ms, so 50 slices
        while (work.running())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_GT(asked, 10);
    EXPECT_GE(turns, 20);
}
