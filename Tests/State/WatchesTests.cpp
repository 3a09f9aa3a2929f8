#include "Base/Models/Watches.h"
#include <QString>
#include <gtest/gtest.h>

TEST(Watches, callForWhatTheFunctionReadsAndGives)
{
    QProperty<int> number(1);
    QProperty<bool> isCounted(false);
    int calls = 0;
    Watches watches;
    watches.add([&] { return isCounted ? number.value() : 0; }, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    number = 2; // not read so far
    EXPECT_EQ(calls, 0);
    isCounted = true;
    EXPECT_EQ(calls, 1);
    number = 3; // read since then
    EXPECT_EQ(calls, 2);
    number = 3;
    EXPECT_EQ(calls, 2);
}

TEST(Watches, endWithTheirOwner)
{
    QProperty<int> number(1);
    int calls = 0;
    {
        Watches watches;
        watches.add([&] { return number.value(); }, [&] { ++calls; });
        number = 2;
    }
    number = 3;
    EXPECT_EQ(calls, 1);
}
