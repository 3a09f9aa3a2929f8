#include "Tests/Service/Support/ForwardBench.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::ForwardBench;
using test::Peer;
using Door = test::ForwardBench::Door;

/// Two peers with a forwarded stream in between, both sides known to be joined.
struct Joined {
    explicit Joined(const Door &door, const Peer &target) : client(door.connect()), far(target.accept())
    {
        EXPECT_TRUE(client.send("a") && far.receive(1) == "a" && far.send("b") && client.receive(1) == "b");
    }
    Peer client;
    Peer far;
};

TEST(Connection, CountsItsBytesAndSaysThatItEnded)
{
    ForwardBench bench;
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port()));
    const Joined joined(door, target);
    EXPECT_EQ(door.tally().active, 1);
    EXPECT_EQ(bench.budget().used(), 2U);
    ASSERT_TRUE(joined.client.send("question"));
    joined.client.finishSending();
    EXPECT_EQ(joined.far.receiveAll(), "question");
    ASSERT_TRUE(joined.far.send("answer"));
    joined.far.finishSending();
    EXPECT_EQ(joined.client.receiveAll(), "answer");
    EXPECT_TRUE(door.closes(CloseReason::ended));
    EXPECT_EQ(door.tally().bytesToTarget, 9U);
    EXPECT_EQ(door.tally().bytesToClient, 7U);
    EXPECT_EQ(bench.budget().used(), 0U);
}

TEST(Connection, AResetBecomesOneOnTheOtherSide)
{
    ForwardBench bench;
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port()));
    Joined first(door, target);
    first.client.reset();
    EXPECT_TRUE(first.far.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::resetByClient));
    Joined second(door, target);
    second.far.reset();
    EXPECT_TRUE(second.client.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::resetByTarget));
}

TEST(Connection, AResetAfterItsHalfHasEndedIsNoticed)
{
    ForwardBench bench;
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port()));
    Joined joined(door, target);
    joined.client.finishSending();
    EXPECT_EQ(joined.far.receiveAll(), "");
    joined.client.reset();
    EXPECT_TRUE(door.closes(CloseReason::resetByClient));
    EXPECT_TRUE(test::becomesTrue([&] { return !joined.far.send("x"); }));
}

TEST(Connection, FailedDialIsReportedBeforeTheClientLearnsOfIt)
{
    ForwardBench bench;
    std::vector<std::string> problems;
    Door door(bench, {.dial = [] { return test::failToDial("Nobody is there."); }},
        [&](const Attempts &attempts) { problems.push_back(attempts.problem); });
    EXPECT_TRUE(door.connect().endsInReset());
    EXPECT_EQ(bench.call([&] { return problems; }), std::vector<std::string>{"Nobody is there."});
    EXPECT_TRUE(door.closes(CloseReason::dialFailed));
    door.stop();
    EXPECT_EQ(bench.call([&] { return problems.size(); }), 1U);
}

TEST(Connection, DialThatTakesTooLongIsGivenUp)
{
    ForwardBench bench;
    std::string problem;
    const Door door(bench, {.dial = test::dialWithoutAnswer, .limits = {.dial = 30ms}},
        [&](const Attempts &attempts) { problem = attempts.problem; });
    EXPECT_TRUE(door.connect().endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::dialTookTooLong));
    EXPECT_EQ(bench.call([&] { return problem; }), "The target did not answer within 1 s.");
}

TEST(Connection, IdleOneIsCutAndABusyOneIsNot)
{
    ForwardBench bench;
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port(), {.idle = 200ms}));
    const Joined busy(door, target);
    const Joined idle(door, target);
    std::uint64_t rounds = 0;
    EXPECT_TRUE(test::becomesTrue([&] {
        ++rounds;
        EXPECT_TRUE(busy.client.send("x") && busy.far.receive(1) == "x");
        return door.tally().closedFor(CloseReason::idleTooLong) == 1;
    }));
    EXPECT_TRUE(idle.client.endsInReset());
    EXPECT_TRUE(idle.far.endsInReset());
    EXPECT_TRUE(busy.client.send("y") && busy.far.receive(1) == "y");
    EXPECT_TRUE(busy.client.endsInReset()) << "after it has become idle, too";
}

TEST(Connection, HalfClosedOneIsCutOnceNothingMoves)
{
    ForwardBench bench;
    const Peer target = Peer::listening();
    const Door door(bench, test::to(target.port(), {.halfClosed = 60ms}));
    const Joined joined(door, target);
    joined.client.finishSending();
    EXPECT_TRUE(joined.far.send("late"));
    EXPECT_EQ(joined.client.receive(4), "late");
    EXPECT_TRUE(joined.client.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::halfClosedTooLong));
}

/// Whatever a stream waits for, the stop of its listener ends it.
class StoppedConnection : public ::testing::Test {
protected:
    void expectStopped(Door &door, const Peer &client, std::uint64_t count = 1)
    {
        const auto begin = std::chrono::steady_clock::now();
        door.stop();
        EXPECT_TRUE(client.endsInReset());
        EXPECT_TRUE(door.closes(CloseReason::stopped, count));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
        EXPECT_EQ(bench.budget().used(), 0U);
        EXPECT_ANY_THROW(door.connect());
    }
    bool becomesActive(const Door &door) const
    {
        return test::becomesTrue([&] { return door.tally().active == 1; });
    }

    ForwardBench bench;
    const Peer target = Peer::listening();
};

TEST_F(StoppedConnection, WhileItIsDialled)
{
    Door door(bench, {.dial = test::dialWithoutAnswer});
    const Peer client = door.connect();
    ASSERT_TRUE(becomesActive(door));
    expectStopped(door, client);
}

boost::asio::awaitable<StreamSocket> dialDeafly(std::shared_ptr<std::promise<void>> begun)
{
    co_await boost::asio::this_coro::reset_cancellation_state(boost::asio::disable_cancellation());
    begun->set_value();
    co_return co_await test::dialWithoutAnswer();
}

TEST_F(StoppedConnection, WhileADialGoesOnThatDoesNotHearOfIt)
{
    const auto begun = std::make_shared<std::promise<void>>();
    Door door(bench, {.dial = [begun] { return dialDeafly(begun); }});
    const Peer client = door.connect();
    begun->get_future().wait();
    expectStopped(door, client);
}

TEST_F(StoppedConnection, WhileNothingMoves)
{
    Door door(bench, test::to(target.port()));
    const Joined joined(door, target);
    expectStopped(door, joined.client);
    EXPECT_TRUE(joined.far.endsInReset());
}

TEST_F(StoppedConnection, WhileItsReceiverIsStuck)
{
    Door door(bench, test::to(target.port()));
    const Joined joined(door, target);
    const std::string piece(1024UL * 1024, 'x');
    unsigned silent = 0;
    ASSERT_TRUE(test::becomesTrue([&] {
        silent = joined.client.sendWhatFits(piece) == 0 ? silent + 1 : 0;
        return silent > 1000;
    }));
    expectStopped(door, joined.client);
    EXPECT_TRUE(joined.far.endsInReset());
}

TEST_F(StoppedConnection, WhileOneSideHasEnded)
{
    Door door(bench, test::to(target.port()));
    const Joined joined(door, target);
    joined.far.finishSending();
    EXPECT_EQ(joined.client.receiveAll(), "");
    door.stop();
    EXPECT_TRUE(joined.far.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::stopped));
}

TEST_F(StoppedConnection, AloneAmongThoseOfOthers)
{
    const Door other(bench, test::to(target.port()));
    const Joined staying(other, target);
    Door door(bench, test::to(target.port()));
    const Joined going(door, target);
    door.stop();
    EXPECT_TRUE(going.client.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::stopped));
    EXPECT_TRUE(staying.client.send("x") && staying.far.receive(1) == "x");
}

TEST(TrafficPool, EndsSoonWhateverItsStreamsWaitFor)
{
    const auto begun = std::make_shared<std::promise<void>>();
    std::optional<ForwardBench> bench(std::in_place);
    std::optional<Door> door(std::in_place, *bench, Route{.dial = [begun] { return dialDeafly(begun); }});
    const Peer client = door->connect();
    begun->get_future().wait();
    const auto begin = std::chrono::steady_clock::now();
    bench->pool().stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_TRUE(client.endsInReset());
    EXPECT_EQ(door->tally().active, 0);
}

} // namespace

} // namespace veranox
