#include "Service/Cli/EndWatch.h"
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <gtest/gtest.h>
#include <iostream>
#include <mutex>
#include <unistd.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;

/// What a service does whose disk hangs.
[[noreturn]] void hang()
{
    for (;;)
        ::pause();
}

void sayCut()
{
    std::cerr << "cut\n";
}

TEST(EndWatchDeathTest, ASignalEndsWhatHangs)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int number : {SIGTERM, SIGINT})
        EXPECT_EXIT(
            {
                const EndWatch watch(20ms, [](int seen) { std::cerr << "signal " << seen << "\n"; }, sayCut);
                ::kill(::getpid(), number);
                ::kill(::getpid(), number);
                hang();
            },
            ::testing::ExitedWithCode(0), "signal " + std::to_string(number) + "\n(signal [0-9]+\n)*cut\n");
}

TEST(EndWatchDeathTest, SoDoesAWishOfTheServiceItself)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            EndWatch watch(20ms, [](int) { std::cerr << "signal\n"; }, sayCut);
            watch.begin();
            watch.begin();
            hang();
        },
        ::testing::ExitedWithCode(0), "^cut\n$");
}

TEST(EndWatch, CutsNothingThatEndsInTime)
{
    std::mutex mutex;
    std::condition_variable changed;
    int seen = 0;
    std::atomic<bool> isCut = false;
    {
        EndWatch watch(
            1h,
            [&](int number) {
                const std::scoped_lock lock(mutex);
                seen = number;
                changed.notify_one();
            },
            [&] { isCut = true; });
        ::kill(::getpid(), SIGTERM);
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, 20s, [&] { return seen == SIGTERM; }));
    }
    EXPECT_FALSE(isCut);
}

} // namespace

} // namespace veranox
