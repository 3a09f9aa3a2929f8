#include "Tests/Base/Jobs/JobOwner.h"
#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace jobs;

TEST(Workers, HopAndBackWhileVirtualTimeStandsStill)
{
    struct Place {
        QThread *thread;
        QString id;
    };
    struct L {
        static Async<> go(JobOwner *o, Workers *workers)
        {
            const QThread *const home = QThread::currentThread();
            co_await sleep(10s);
            const Place there = co_await workers->run([] {
                QThread::msleep(20);
                return Place{.thread = QThread::currentThread(), .id = ambient().value_or(u"-"_s)};
            });
            o->note(QThread::currentThread() == home && there.thread != home ? "hopped" : "stayed");
            o->note(there.id.toStdString());
            co_await workers->run([] { });
        }
    };
    World w;
    Workers workers(w.queue, 2);
    JobOwner o(w);
    {
        const AmbientScope id(u"id-3"_s);
        o.jobs.start(L::go(&o, &workers));
    }
    w.run(60s);
    EXPECT_EQ(o.log, (Notes{"hopped@100", "id-3@100"}));
    EXPECT_EQ(o.jobs.running(), 0u);
}

TEST(Workers, WhatTheWorkThrowsIsThrownToTheJob)
{
    struct L {
        static Async<> go(JobOwner *o, Workers *workers)
        {
            try {
                co_await workers->run([]() -> int { throw std::runtime_error("disk"); });
            } catch (const std::runtime_error &e) {
                o->note(e.what());
            }
        }
    };
    World w;
    Workers workers(w.queue, 1);
    JobOwner o(w);
    o.jobs.start(L::go(&o, &workers));
    w.run();
    EXPECT_EQ(o.log, (Notes{"disk@0"}));
}

TEST(Workers, TheWorkIsToldWhenItsJobIsCancelledOrGone)
{
    struct L {
        static Async<> go(JobOwner *o, Workers *workers, std::atomic<int> *started, std::atomic<int> *stopped)
        {
            const int n = co_await workers->run([started, stopped](std::stop_token stop) {
                started->fetch_add(1);
                while (!stop.stop_requested())
                    QThread::msleep(1);
                stopped->fetch_add(1);
                return 5;
            });
            o->note(std::to_string(n));
        }
    };
    std::atomic<int> started = 0;
    std::atomic<int> stopped = 0;
    SystemClock clock;
    MainQueue queue(clock);
    World w; // only for the times in the notes
    Workers workers(queue, 2);
    struct RealOwner : JobOwner {
        RealOwner(World &world, MainQueue &realQueue) : JobOwner(world), real(realQueue) { }
        JobScope real;
    };
    auto o = std::make_unique<RealOwner>(w, queue);
    auto cancelled = o->real.start(L::go(o.get(), &workers, &started, &stopped));
    o->real.start(L::go(o.get(), &workers, &started, &stopped));
    while (started < 2)
        QCoreApplication::processEvents();
    cancelled.cancel();
    while (cancelled.running())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(o->log, (Notes{"5@0"}));
    EXPECT_EQ(stopped, 1);
    o.reset();
    queue.settle(); // comes back when the other worker has seen it
    EXPECT_EQ(stopped, 2);
}

TEST(Workers, ManyThreadsAnswerOneQueue) // for the thread sanitizer
{
    struct L {
        static Async<> go(Workers *workers, int *sum)
        {
            for (int i = 0; i < 50; ++i) {
                const int n = co_await workers->run([i] { return i; });
                *sum += n;
            }
        }
    };
    World w;
    Workers workers(w.queue, 4);
    JobOwner o(w);
    int sum = 0;
    for (int i = 0; i < 20; ++i)
        o.jobs.start(L::go(&workers, &sum));
    w.run();
    EXPECT_EQ(sum, 20 * 49 * 25);
}

TEST(Workers, AskedFromAWorkerNoJobIsRunning)
{
    struct L {
        static Async<> go(JobOwner *o, Workers *workers)
        {
            o->note(this_job::cancelled() ? "cancelled" : "not");
            const bool there = co_await workers->run([] { return this_job::cancelled(); });
            o->note(there ? "cancelled" : "not");
        }
    };
    World w;
    Workers workers(w.queue, 1);
    JobOwner o(w);
    o.jobs.start(L::go(&o, &workers)).cancel();
    w.run();
    EXPECT_EQ(o.log, (Notes{"cancelled@0", "not@0"}));
}
