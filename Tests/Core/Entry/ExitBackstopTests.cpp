#include "Core/Entry/ExitBackstop.h"
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace std::chrono_literals;
using ::testing::ExitedWithCode;

namespace {

// A main thread that never comes to an end; without a backstop the alarm's signal is its end.
[[noreturn]] void hang()
{
    ::alarm(20);
    for (;;)
        ::pause();
}

class ExitBackstopDeathTest : public ::testing::Test {
protected:
    ExitBackstopDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); } // the desktop's threads are there
};

} // namespace

TEST_F(ExitBackstopDeathTest, endsAProcessThatHangs)
{
    EXPECT_EXIT(
        {
            endProcessAfter(10ms);
            hang();
        },
        ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ExitBackstopDeathTest, endsItWithoutItsDestructorsWhichMayHang)
{
    EXPECT_EXIT(
        {
            std::atexit([] { hang(); });
            endProcessAfter(10ms);
            hang();
        },
        ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ExitBackstopDeathTest, leavesTheProcessAloneUntilThen)
{
    EXPECT_EXIT(
        {
            endProcessAfter(1h);
            std::_Exit(3);
        },
        ExitedWithCode(3), "");
}
