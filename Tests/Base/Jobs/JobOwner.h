// An object with jobs, for the tests of the job library.
#pragma once
#include "Tests/Support/VirtualTime.h"
#include <QScopeGuard>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace jobs {

using namespace std::chrono_literals;
using Notes = std::vector<std::string>;

struct JobOwner {
    explicit JobOwner(World &w) : world(w), jobs(w.queue) { }

    // "text@tenths of a second"
    void note(const std::string &text)
    {
        log.push_back(text + "@" + std::to_string(static_cast<int>(world.seconds() * 10)));
    }
    Async<int> slowAnswer(int n, Clock::Duration wait)
    {
        co_await sleep(wait);
        co_return n;
    }
    Async<> twoSleeps()
    {
        note("begin");
        const Sleep first = co_await sleep(10s);
        note(first == Sleep::cut ? "cut" : "full");
        note(this_job::cancelled() ? "sees cancel" : "no cancel");
        const Sleep second = co_await sleep(10s);
        note(second == Sleep::cut ? "cut" : "full");
        note("end");
    }
    // One launch, shared by all who ask while it runs.
    Job<int> ensureLaunched()
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
        const int result = co_await ensureLaunched();
        note(name + std::to_string(result));
    }

    World &world;
    Notes log;
    int launches = 0;
    Job<int> shared;
    JobScope jobs; // last
};

} // namespace jobs
