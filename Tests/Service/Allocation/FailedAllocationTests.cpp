#include "Service/Net/LabCertificate.h"
#include "Tests/Service/Allocation/FailingAllocation.h"
#include "Tests/Service/Support/ForwardBench.h"
#include "Tests/Service/Support/TlsPeer.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

using test::FailingAllocation;
using test::ForwardBench;
using test::Peer;
using test::TlsPeer;
using Door = test::ForwardBench::Door;

/// Whatever allocation fails in the life of a stream, it is counted out, and the next one finds everything in order.
class FailedAllocation : public ::testing::Test {
protected:
    FailedAllocation()
    {
        std::promise<void> chosen;
        boost::asio::post(bench.pool().leastLoaded().context(), [&] {
            FailingAllocation::chooseThisThread();
            chosen.set_value();
        });
        chosen.get_future().wait();
    }

    bool isAllOver(const Door &door)
    {
        return test::becomesTrue([&] {
            return door.tally().active == 0 && bench.budget().used() == 0 && bench.pool().leastLoaded().streams() == 0;
        });
    }

    /// Fails each allocation in turn, until a whole life needs none that would fail. Says how many there were.
    template <class Life> std::size_t failEach(const Door &door, Life life)
    {
        constexpr std::size_t most = 500;
        for (std::size_t number = 0; number < most; ++number) {
            FailingAllocation::failAt(number);
            life();
            const bool isOver = isAllOver(door);
            const bool anyFailed = FailingAllocation::disarm();
            EXPECT_TRUE(isOver) << "allocation " << number;
            if (!anyFailed || !isOver)
                return number;
        }
        return most;
    }

    ForwardBench bench{{.descriptors = ForwardBench::plenty}, 1};
    const Peer target = Peer::listening();
};

TEST_F(FailedAllocation, OfAPlainStream)
{
    Door door(bench, test::to(target.port(), {.dial = std::chrono::milliseconds(200)}));
    std::thread far([&] {
        for (;;) {
            const Peer taken = target.accept();
            const std::string heard = taken.receive(1);
            if (heard == "q")
                return;
            taken.send(heard);
        }
    });
    const auto live = [&] {
        const Peer client = door.connect();
        client.send("x");
        client.finishSending();
        client.receiveAll();
    };
    EXPECT_GT(failEach(door, live), 5U) << "or nothing was tried";
    const Peer client = door.connect();
    EXPECT_TRUE(client.send("y"));
    EXPECT_EQ(client.receive(1), "y");
    Peer::connectTo(target.port()).send("q");
    far.join();
}

TEST_F(FailedAllocation, OfOneThatIsDialledInVain)
{
    Door door(bench, {.dial = [] { return test::failToDial("No."); }});
    EXPECT_GT(failEach(door, [&] { door.connect().receiveAll(); }), 5U);
    EXPECT_TRUE(door.connect().endsInReset());
}

} // namespace

} // namespace veranox
