#include "Service/Files/DescriptorLimit.h"
#include "Tests/Service/Support/StreamModel.h"
#include <filesystem>
#include <gtest/gtest.h>

namespace veranox {

namespace {

using test::ForwardBench;
using test::StreamModel;

std::ptrdiff_t openDescriptors()
{
    const std::filesystem::directory_iterator begin("/dev/fd");
    return std::distance(begin, std::filesystem::directory_iterator());
}

class RandomStreams : public ::testing::TestWithParam<unsigned> { };

TEST_P(RandomStreams, AllEndAndNothingIsLostOrLeft)
{
    raiseDescriptorLimit();
    constexpr unsigned steps = 20'000;
    const std::uint64_t seed = GetParam() != 0 ? GetParam() : std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const std::ptrdiff_t before = openDescriptors();
    {
        ForwardBench bench;
        StreamModel model(bench, seed);
        for (unsigned i = 0; i < steps && !model.isBroken(); ++i)
            model.step();
        EXPECT_TRUE(model.settle()) << "a stream does not end";
        EXPECT_FALSE(model.isBroken()) << "bytes are lost, or a stream was cut that nobody cut";
        EXPECT_GT(model.whole(), model.opened() / 10) << "many must have come to an end in order";
        EXPECT_TRUE(test::becomesTrue([&] { return bench.budget().used() == 0; }));
    }
    EXPECT_EQ(openDescriptors(), before);
}

/// The last one is another each time.
INSTANTIATE_TEST_SUITE_P(Seeds, RandomStreams, ::testing::Values(1U, 2U, 3U, 0U));

} // namespace

} // namespace veranox
