#include "Service/Files/DescriptorLimit.h"
#include "Tests/Service/Support/LabBench.h"
#include "Tests/Service/Support/SocketQueues.h"
#include "Tests/Service/Tunnels/LabTunnel.h"
#include <gtest/gtest.h>
#include <list>

namespace veranox {

namespace {

using namespace test::lab_tunnel;
using test::LabBench;
using test::Peer;
using test::SocketQueues;

/// Bytes in which every place can be told from its neighbours.
std::string pattern(std::size_t size, unsigned seed)
{
    std::string bytes(size, '\0');
    unsigned state = seed * 2654435761U + 1;
    for (char &byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

/// The client of a tunnel whose target reads nothing.
class StuckSender {
public:
    StuckSender(LabBench &bench, const Peer &client, const Peer &far) : m_bench(bench), m_client(client), m_far(far) { }

    /// Sends until nothing moves any more, on its own side or in the tunnel. False when the tunnel takes all too much.
    bool sendsUntilStuck()
    {
        return m_bench.becomes([this] { return m_sent > enough || isStuck(); }) && m_sent <= enough;
    }

private:
    static constexpr std::size_t enough = 64 * 1024 * 1024;

    /// What the system holds at each of the four ends.
    struct Queues {
        SocketQueues client;
        SocketQueues tunnelIn;
        SocketQueues tunnelOut;
        SocketQueues far;

        bool operator==(const Queues &) const = default;
    };

    Queues queues() const
    {
        return {.client = test::socketQueues(m_client.port(), m_client.remotePort()),
            .tunnelIn = test::socketQueues(m_client.remotePort(), m_client.port()),
            .tunnelOut = test::socketQueues(m_far.remotePort(), m_far.port()),
            .far = test::socketQueues(m_far.port(), m_far.remotePort())};
    }

    /// The tunnel has its turns and leaves unread what lies ready for it, since its target takes no more.
    bool isStuck()
    {
        static const std::string piece(1024 * 1024, 'x');
        const std::size_t count = m_client.sendWhatFits(piece);
        m_sent += count;
        if (count == piece.size())
            return false;
        const Queues before = queues();
        constexpr int turns = 4; // to hear of a socket that is ready, to use it, and as much for the other socket
        for (int turn = 0; turn < turns; ++turn)
            m_bench.call([] { });
        return before == queues() && before.tunnelIn.receiving > 0 && before.far.receiving > 0;
    }

    LabBench &m_bench;
    const Peer &m_client;
    const Peer &m_far;
    std::size_t m_sent = 0;
};

TEST(NativeTunnel, NoticesAResetBehindAReceiverThatIsStuck)
{
    const Peer target = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, at(target.port())));
    Peer client = Peer::connectTo(port);
    const Peer far = target.accept();
    ASSERT_TRUE(StuckSender(bench, client, far).sendsUntilStuck()) << "nobody reads, so the sender is held up";
    client.reset();
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == 0; }));
}

TEST(NativeTunnel, AStuckPeerHoldsUpNobodyElse)
{
    const Peer target = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, at(target.port())));
    const Peer stuck = Peer::connectTo(port);
    const Peer deaf = target.accept();
    ASSERT_TRUE(StuckSender(bench, stuck, deaf).sendsUntilStuck());
    const Peer client = Peer::connectTo(port);
    const Peer far = target.accept();
    ASSERT_TRUE(client.send("hello"));
    EXPECT_EQ(far.receive(5), "hello");
}

/// 500 at once, each with bytes of its own; every tenth is torn down half-way.
TEST(NativeTunnel, FiveHundredConnectionsLoseNothingWhileOthersAreReset)
{
    raiseDescriptorLimit();
    constexpr unsigned connections = 500;
    constexpr std::size_t size = 100'000;
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo"));
    std::list<Peer> clients;
    for (unsigned i = 0; i < connections; ++i)
        clients.push_back(Peer::connectTo(port));
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == connections; }));
    unsigned index = 0;
    for (const Peer &client : clients)
        ASSERT_TRUE(client.send(pattern(size, index++).substr(0, size / 2)));
    index = 0;
    for (Peer &client : clients)
        if (index++ % 10 == 5)
            client.reset();
    index = 0;
    unsigned intact = 0;
    for (const Peer &client : clients) {
        const std::string bytes = pattern(size, index);
        if (index++ % 10 == 5)
            continue;
        ASSERT_TRUE(client.send(bytes.substr(size / 2)));
        client.finishSending();
        intact += client.receiveAll() == bytes ? 1 : 0;
    }
    EXPECT_EQ(intact, connections * 9 / 10);
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == 0; }));
}

} // namespace

} // namespace veranox
