// Random jobs of random owners, cancelled and destroyed at random moments: for the sanitizers, and for determinism.
#include "Tests/Support/VirtualTime.h"
#include <QScopeGuard>
#include <gtest/gtest.h>
#include <random>
#include <stdexcept>

using namespace std::chrono_literals;
using namespace jobs;

namespace {
// Many of these jobs fail with nobody asking, on purpose: no lines for it.
class Silence {
public:
    Silence() : m_before(qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) { })) { }
    ~Silence() { qInstallMessageHandler(m_before); }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

private:
    QtMessageHandler m_before;
};

struct Simulation;
struct Owner {
    Owner(Simulation &s, int n);
    Async<int> work(int depth);
    Async<> top(int depth);
    Simulation &sim;
    int id;
    int live = 0;
    std::vector<int> heap; // touched after every wait: a late resume is a use after free
    Job<int> shared;
    JobScope jobs;
};
struct Simulation {
    explicit Simulation(unsigned seed, bool threads) : random(seed), useThreads(threads) { }
    int pick(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    Silence silence;
    std::mt19937 random;
    bool useThreads;
    World w;
    Workers workers{w.queue, 2};
    std::vector<std::unique_ptr<Owner>> owners;
    std::vector<Job<int>> handles;
    std::vector<Resolver<int>> open;
    std::uint64_t trace = 0;
    long steps = 0;
    void mark(int v)
    {
        trace = trace * 1099511628211u + static_cast<unsigned>(v);
        ++steps;
    }
};
Owner::Owner(Simulation &s, int n) : sim(s), id(n), heap(8, n), jobs(s.w.queue) { }
Async<int> Owner::work(int depth)
{
    ++live;
    const auto g = qScopeGuard([this] {
        --live;
        heap[0] = live;
    });
    int sum = 0;
    const int rounds = 1 + sim.pick(4);
    for (int i = 0; i < rounds; ++i) {
        const int what = sim.pick(sim.useThreads ? 9 : 8);
        if (what == 0) {
            co_await yield();
        } else if (what <= 2) {
            const Sleep s = co_await sleep(1ms * (1 + sim.pick(2000)));
            sum += s == Sleep::cut;
        } else if (what == 3 && depth > 0) {
            const int n = co_await work(depth - 1);
            sum += n;
        } else if (what == 4 && depth > 0) {
            auto a = fork(work(depth - 1));
            auto b = fork(work(depth - 1));
            const CancelAfter limit(a, 300ms);
            const int x = co_await a;
            sum += x;
            if (sim.pick(2)) {
                const int y = co_await b;
                sum += y;
            }
        } else if (what == 5 && depth > 0) {
            if (!shared.running())
                shared = jobs.start(work(0)); // never one that could wait for itself
            const Job<int> j = shared;
            const int n = co_await j;
            sum += n;
        } else if (what == 6) {
            if (!sim.handles.empty() && depth > 1) {
                const Job<int> j =
                    sim.handles[static_cast<std::size_t>(sim.pick(static_cast<int>(sim.handles.size())))];
                if (sim.pick(3) == 0)
                    j.cancel();
            }
            if (sim.pick(20) == 0)
                throw std::runtime_error("x");
        } else if (what == 7) {
            Completion<int> c(jobs.queue());
            sim.open.push_back(c.resolver());
            try {
                const int n = co_await c;
                sum += n;
            } catch (const ResolverDropped &) {
                sum += 100;
            }
        } else if (what == 8) {
            auto hop = sim.workers.run([] { return 3; });
            const int n = co_await hop;
            sum += n;
        }
        heap[1] += 1;
        sim.mark(id * 100 + what);
    }
    co_return sum;
}
Async<> Owner::top(int depth)
{
    try {
        auto child = fork(work(depth));
        const int n = co_await child;
        sim.mark(n);
    } catch (const std::runtime_error &) {
        sim.mark(-1);
    }
    heap[2] += 1;
}
std::pair<std::uint64_t, long> simulate(unsigned seed, bool threads)
{
    Simulation s(seed, threads);
    for (int i = 0; i < 6; ++i)
        s.owners.push_back(std::make_unique<Owner>(s, i));
    for (int step = 0; step < 400; ++step) {
        const auto n = static_cast<std::size_t>(s.pick(static_cast<int>(s.owners.size())));
        switch (s.pick(10)) {
        case 0:
        case 1:
        case 2:
            s.owners[n]->jobs.start(s.owners[n]->top(3));
            break;
        case 3:
            s.handles.push_back(s.owners[n]->jobs.start(s.owners[n]->work(2)));
            break;
        case 4:
            if (!s.handles.empty())
                s.handles[static_cast<std::size_t>(s.pick(static_cast<int>(s.handles.size())))].cancel();
            break;
        case 5:
            if (s.pick(3) == 0)
                s.owners[n]->jobs.cancelAll();
            break;
        case 6:
            if (s.pick(4) == 0)
                s.owners[n] = std::make_unique<Owner>(s, static_cast<int>(n));
            break;
        case 7:
            if (!s.open.empty()) {
                s.open.back().resolve(1);
                s.open.pop_back();
            }
            break;
        case 8:
            if (!s.open.empty() && s.pick(5) == 0)
                s.open.erase(s.open.begin());
            break;
        default:
            s.w.run(1ms * s.pick(500));
            break;
        }
    }
    do { // whoever still waits for an answer loses its resolver
        s.open.clear();
        s.w.run(1h);
    } while (!s.open.empty());
    for (const auto &o : s.owners) {
        EXPECT_EQ(o->jobs.running(), 0u);
        EXPECT_EQ(o->live, 0);
    }
    return {s.trace, s.steps};
}
} // namespace

TEST(RandomJobs, TheSameSeedGivesTheSameTraceAndNothingIsLeft)
{
    long steps = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const auto a = simulate(seed, false);
        const auto b = simulate(seed, false);
        EXPECT_EQ(a, b) << seed;
        steps += a.second;
    }
    EXPECT_GT(steps, 10000);
}

TEST(RandomJobs, WithThreadsNothingIsLeft)
{
    for (unsigned seed = 1; seed <= 10; ++seed)
        EXPECT_GT(simulate(seed, true).second, 100);
}
