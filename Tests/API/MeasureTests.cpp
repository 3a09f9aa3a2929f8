// The measures that other tests rely on do see what they are to see.
#include "Tests/Support/MainThreadHeartbeat.h"
#include "Tests/Support/PeakMemory.h"
#include <ctime>
#include <gtest/gtest.h>
#include <vector>

namespace {
double processorMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}
} // namespace

TEST(MainThreadHeartbeat, SeesABlockedMainThread)
{
    MainThreadHeartbeat heartbeat;
    int turns = 0;
    const auto blockOnce = [&] {
        const double begin = processorMilliseconds();
        while (turns == 3 && processorMilliseconds() - begin < 80) { }
        return ++turns > 6;
    };
    ASSERT_TRUE(heartbeat.turnLoopUntil(blockOnce));
    EXPECT_GE(heartbeat.longestPause(), 75);
}

TEST(PeakMemory, SeesWhatIsFreedAgain)
{
    if (!PeakMemory::isMeaningful)
        GTEST_SKIP() << "the sanitizer's own memory hides the program's";
    constexpr std::size_t size = 64 * 1024 * 1024;
    PeakMemory peak;
    peak.begin();
    EXPECT_LT(peak.growth(), 8 * 1024 * 1024);
    {
        const std::vector<char> block(size, 'x');
        const volatile char *const seen = block.data(); // an optimiser must not leave the block out
        EXPECT_EQ(seen[size / 2], 'x');
    }
    EXPECT_GE(peak.growth(), static_cast<qint64>(size) * 9 / 10);
}
