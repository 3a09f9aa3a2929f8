#include "State/VeranoxRaisedFlag.h"
#include <gtest/gtest.h>

TEST(VeranoxRaisedFlag, isUpForItsLife)
{
    VeranoxState state;
    {
        const VeranoxRaisedFlag flag(state, &VeranoxState::setIsRestartingRouter);
        EXPECT_TRUE(state.isRestartingRouter());
    }
    EXPECT_FALSE(state.isRestartingRouter());
}

TEST(VeranoxRaisedFlag, outlivesItsState)
{
    auto state = std::make_unique<VeranoxState>();
    const auto flag = std::make_unique<VeranoxRaisedFlag>(*state, &VeranoxState::setIsRefreshing);
    EXPECT_TRUE(state->isRefreshing());
    state.reset(); // what the flag then does would end the test
}
