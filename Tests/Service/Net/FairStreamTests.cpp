#include "Service/Files/DescriptorLimit.h"
#include "Tests/Service/Support/ForwardBench.h"
#include <fcntl.h>
#include <gtest/gtest.h>
#include <list>

namespace veranox {

namespace {

using test::ForwardBench;
using test::Peer;

/// Streams whose senders always have more to send, and one whose sender has a byte now and then, on one thread.
TEST(FairStreams, OneByteOvertakesManyWhoSendWithoutEnd)
{
    raiseDescriptorLimit();
    constexpr unsigned senders = 60;
    constexpr std::size_t backlog = 400'000; // for each sender, larger than any turn
    ForwardBench bench({.descriptors = ForwardBench::plenty}, 1);
    const Peer target = Peer::listening();
    const ForwardBench::Door door(bench, test::to(target.port()));
    std::list<std::pair<Peer, Peer>> bulk;
    for (unsigned i = 0; i < senders; ++i) {
        Peer client = door.connect();
        bulk.emplace_back(std::move(client), target.accept());
    }
    const Peer client = door.connect();
    const Peer far = target.accept();
    // The thread of the streams stands still until all have something to move, the small one last.
    std::promise<void> held;
    std::promise<void> released;
    boost::asio::post(bench.pool().leastLoaded().context(), [&] {
        held.set_value();
        released.get_future().wait();
    });
    held.get_future().wait();
    const std::string bytes(backlog, 'x');
    std::vector<std::size_t> sent;
    for (const auto &[sender, receiver] : bulk)
        sent.push_back(sender.sendWhatFits(bytes));
    ASSERT_TRUE(client.send("!"));
    released.set_value();
    ASSERT_EQ(far.receive(1), "!");
    std::size_t already = 0;
    std::array<char, backlog> room{};
    for (const auto &[sender, receiver] : bulk)
        already += static_cast<std::size_t>(
            std::max<ssize_t>(0, ::recv(receiver.descriptor(), room.data(), room.size(), MSG_DONTWAIT | MSG_PEEK)));
    std::size_t all = 0;
    for (const std::size_t count : sent)
        all += count;
    EXPECT_GT(all, senders * std::size_t{100'000}) << "there must be something to overtake";
    EXPECT_LT(already, all / 2) << "the small one does not wait until the others have had their way";
}

} // namespace

} // namespace veranox
