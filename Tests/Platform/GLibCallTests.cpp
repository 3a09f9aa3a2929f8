#include "Platform/Linux/Secrets/GLibCall.h"
// GLib comes before Qt, whose keywords would be its names.
#include "Tests/Support/VirtualTime.h"
#include <gtest/gtest.h>

namespace {

class GLibCallTests : public ::testing::Test {
protected:
    jobs::Async<> waitForAnswer()
    {
        const GLibCall call(world.queue);
        if (isAnswered)
            GLibCall::finished(nullptr, answer.get(), call.callData());
        cancellable = call.cancellable();
        g_object_ref(cancellable);
        try {
            answered = (co_await call).get() == answer.get();
        } catch (const GLibCall::Cancelled &) {
            wasCancelled = true;
        }
    }

    ~GLibCallTests() override { g_clear_object(&cancellable); }

    jobs::World world;
    GLibObject<GAsyncResult> answer = adopted(G_ASYNC_RESULT(g_task_new(nullptr, nullptr, nullptr, nullptr)));
    GCancellable *cancellable = nullptr;
    bool isAnswered = false;
    bool answered = false;
    bool wasCancelled = false;
    jobs::JobScope scope{world.queue};
};

} // namespace

TEST_F(GLibCallTests, GivesTheAnswer)
{
    isAnswered = true;
    scope.start(waitForAnswer());
    world.run();
    EXPECT_TRUE(answered);
    EXPECT_FALSE(g_cancellable_is_cancelled(cancellable));
}

TEST_F(GLibCallTests, IsLeftAtOnceWhenItIsCancelledAndNeverAnswers)
{
    auto job = scope.start(waitForAnswer());
    world.run(std::chrono::hours(1));
    ASSERT_FALSE(wasCancelled);
    job.cancel();
    world.run();
    EXPECT_TRUE(wasCancelled);
    EXPECT_TRUE(g_cancellable_is_cancelled(cancellable));
}
