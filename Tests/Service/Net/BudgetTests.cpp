#include "Service/Net/Budget.h"
#include "Tests/Service/Support/ForwardBench.h"
#include <gtest/gtest.h>
#include <list>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::ForwardBench;
using test::Peer;
using Door = test::ForwardBench::Door;

class Seat final : public Budget::Seat {
public:
    Seat() = default;
    Seat(const Seat &) = delete;
    Seat &operator=(const Seat &) = delete;
    ~Seat() override { leave(); }
    bool isShed = false;

private:
    void shed() override { isShed = true; }
};

/// Room for twelve streams; what waits may be shed at once.
class BudgetTest : public ::testing::Test {
protected:
    static constexpr std::size_t room = 12;

    unsigned admitUntilFull(const std::shared_ptr<Budget::Share> &share)
    {
        unsigned count = 0;
        while (budget.admit(share, seats.emplace_back())) {
            seats.back().settle();
            ++count;
        }
        return count;
    }

    unsigned strained = 0;
    Budget budget{{.descriptors = 2 * room * 4 / 3, .patience = 0ms}, [this] { ++strained; }};
    std::list<Seat> seats;
};

TEST_F(BudgetTest, OneAloneMayTakeEverything)
{
    EXPECT_EQ(admitUntilFull(budget.openShare()), room);
    EXPECT_EQ(budget.strain(), (Budget::Strain{.refused = 1, .shed = 0}));
    EXPECT_EQ(strained, 1U);
    seats.clear();
    EXPECT_EQ(budget.used(), 0U);
}

TEST_F(BudgetTest, TheOthersKeepWhatIsPromised)
{
    const auto greedy = budget.openShare();
    const auto modest = budget.openShare();
    EXPECT_LT(admitUntilFull(greedy), room);
    EXPECT_GE(admitUntilFull(modest), 1U);
    budget.closeShare(*modest);
    seats.clear();
    EXPECT_EQ(admitUntilFull(greedy), room) << "nothing is promised to one that is gone";
}

TEST_F(BudgetTest, TheLongestWaitingMakesRoom)
{
    const auto share = budget.openShare();
    std::list<Seat> waiting(room);
    for (Seat &seat : waiting)
        ASSERT_TRUE(budget.admit(share, seat));
    waiting.front().settle();
    Seat newcomer;
    EXPECT_TRUE(budget.admit(share, newcomer));
    EXPECT_FALSE(waiting.front().isShed);
    EXPECT_TRUE(std::next(waiting.begin())->isShed);
    EXPECT_EQ(budget.strain(), (Budget::Strain{.refused = 0, .shed = 1}));
    waiting.front().beginToWait();
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(budget.admit(share, seats.emplace_back()));
    EXPECT_FALSE(waiting.front().isShed) << "it began to wait last";
    EXPECT_FALSE(newcomer.isShed);
    Seat last;
    EXPECT_TRUE(budget.admit(share, last));
    EXPECT_TRUE(newcomer.isShed);
    EXPECT_EQ(budget.used(), 2 * room);
}

TEST_F(BudgetTest, OneOfTheRichestMakesRoomForAnother)
{
    const auto crowded = budget.openShare();
    const auto small = budget.openShare();
    std::list<Seat> crowd;
    while (budget.strain().shed == 0)
        ASSERT_TRUE(budget.admit(crowded, crowd.emplace_back()));
    Seat few;
    while (!crowd.front().isShed)
        crowd.pop_front();
    const auto isShed = [](const Seat &seat) { return seat.isShed; };
    const auto before = std::ranges::count_if(crowd, isShed);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(budget.admit(small, seats.emplace_back()));
    EXPECT_GT(std::ranges::count_if(crowd, isShed), before - 1);
    EXPECT_TRUE(std::ranges::none_of(seats, isShed));
}

TEST(Budget, WhoHasJustComeIsNotShed)
{
    Budget budget({.descriptors = 8, .patience = 1h}, [] { });
    const auto share = budget.openShare();
    std::list<Seat> waiting;
    while (budget.admit(share, waiting.emplace_back())) { }
    EXPECT_EQ(waiting.size(), 4U);
    EXPECT_TRUE(std::ranges::none_of(waiting, [](const Seat &seat) { return seat.isShed; }));
}

TEST(Budget, PipesHaveAnEndOfTheirOwn)
{
    Budget budget({.descriptors = 16}, [] { });
    EXPECT_TRUE(budget.takePipe());
    EXPECT_TRUE(budget.takePipe());
    EXPECT_FALSE(budget.takePipe());
    budget.givePipeBack();
    EXPECT_TRUE(budget.takePipe());
}

/// More connections than there is room for, to a target that keeps them all.
TEST(Budget, WhoFindsNoRoomLearnsSoAtOnceAndTheNextComesInWhenThereIsSome)
{
    ForwardBench bench({.descriptors = 16});
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port()));
    std::list<Peer> clients;
    std::list<Peer> kept;
    for (int i = 0; i < 6; ++i) {
        clients.push_back(door.connect());
        kept.push_back(target.accept());
        ASSERT_TRUE(clients.back().send("x"));
        ASSERT_EQ(kept.back().receive(1), "x");
    }
    EXPECT_TRUE(door.connect().endsInReset());
    EXPECT_EQ(door.tally().closedFor(CloseReason::refused), 1U);
    clients.front().reset();
    EXPECT_TRUE(test::becomesTrue([&] { return door.tally().active == 5; }));
    const Peer late = door.connect();
    const Peer far = target.accept();
    EXPECT_TRUE(late.send("y"));
    EXPECT_EQ(far.receive(1), "y");
}

/// One side of each has ended, and the other never does.
TEST(Budget, HalfClosedStreamsToATargetThatNeverEndsMakeRoom)
{
    ForwardBench bench({.descriptors = 16, .patience = 0ms});
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port()));
    std::list<Peer> clients;
    std::list<Peer> kept;
    for (int i = 0; i < 40; ++i) {
        clients.push_back(door.connect());
        kept.push_back(target.accept());
        ASSERT_TRUE(clients.back().send("x"));
        ASSERT_EQ(kept.back().receive(1), "x");
        clients.back().finishSending();
        ASSERT_EQ(kept.back().receiveAll(), "") << "the relay knows by now that this half has ended";
    }
    EXPECT_GE(door.tally().closedFor(CloseReason::shed), 30U);
    EXPECT_LE(door.tally().active, 8);
}

TEST(Budget, WithoutPipesAStreamIsCopied)
{
    ForwardBench bench({.descriptors = 16});
    while (bench.budget().takePipe()) { }
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port()));
    const Peer client = door.connect();
    const Peer far = target.accept();
    const std::string bytes(300'000, 'x');
    std::thread sender([&] {
        EXPECT_TRUE(client.send(bytes));
        client.finishSending();
    });
    EXPECT_EQ(far.receiveAll().size(), bytes.size());
    sender.join();
}

} // namespace

} // namespace veranox
