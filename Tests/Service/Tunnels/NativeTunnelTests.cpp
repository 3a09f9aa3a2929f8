#include "Service/Files/DescriptorLimit.h"
#include "Tests/Service/Support/LabBench.h"
#include "Tests/Service/Support/SocketQueues.h"
#include <gmock/gmock.h>
#include <list>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::LabBench;
using test::Peer;
using test::SocketQueues;
using ::testing::HasSubstr;

std::string at(std::uint16_t port)
{
    return "127.0.0.1:" + std::to_string(port);
}

/// A lab whose tunnel "t" listens at `listen` and leads to the given host; `host` is the lab's word for it.
std::string labWith(std::uint16_t listen, const std::string &host, const std::string &target = "h.tail1.ts.net:80",
    const std::string &profile = "", const std::string &tunnel = "")
{
    return R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"h": ")" + host
        + R"("}}}, "profiles": {"p": {"tailnet": "net")" + profile + R"(, "config": {"Suffixes": [".tail1.ts.net"]}}},
        "tunnels": {"t": {)"
        + tunnel + R"("config": {"Profile": "p", "Target": ")" + target + R"(", "Listen": ")" + at(listen) + R"("}}}})";
}

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

TEST(NativeTunnel, CarriesBothWaysAndPassesOnTheHalfClose)
{
    const Peer target = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, at(target.port())));
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 0, ""}));
    const Peer client = Peer::connectTo(port);
    const Peer far = target.accept();
    ASSERT_TRUE(client.send("question"));
    EXPECT_EQ(far.receive(8), "question");
    client.finishSending();
    EXPECT_EQ(far.receiveAll(), "");
    ASSERT_TRUE(far.send("answer")) << "the other half stays open";
    EXPECT_EQ(client.receive(6), "answer");
    EXPECT_EQ(bench.tunnel("t").activeConns, 1);
    far.finishSending();
    EXPECT_EQ(client.receiveAll(), "");
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == 0; }));
}

TEST(NativeTunnel, PassesOnAResetFromEitherSide)
{
    const Peer target = Peer::listening();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, at(target.port())));
    for (const bool fromClient : {true, false}) {
        Peer client = Peer::connectTo(port);
        Peer far = target.accept();
        ASSERT_TRUE(client.send("x"));
        ASSERT_EQ(far.receive(1), "x");
        (fromClient ? client : far).reset();
        EXPECT_TRUE((fromClient ? far : client).endsInReset()) << fromClient;
    }
}

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

TEST(NativeTunnel, BuiltInHostsAnswer)
{
    const std::uint16_t site = test::freePort();
    LabBench siteBench(labWith(site, "site"));
    const Peer browser = Peer::connectTo(site);
    ASSERT_TRUE(browser.send("GET / HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n"));
    const std::string page = browser.receiveAll();
    EXPECT_THAT(page, ::testing::StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(page, HasSubstr("host of the lab network"));

    const std::uint16_t echo = test::freePort();
    LabBench echoBench(labWith(echo, "echo"));
    const Peer caller = Peer::connectTo(echo);
    ASSERT_TRUE(caller.send("hello"));
    caller.finishSending();
    EXPECT_EQ(caller.receiveAll(), "hello");

    const std::uint16_t hole = test::freePort();
    LabBench holeBench(labWith(hole, "blackhole"));
    const Peer shouter = Peer::connectTo(hole);
    ASSERT_TRUE(shouter.send("hello"));
    shouter.finishSending();
    EXPECT_EQ(shouter.receiveAll(), "");
}

TEST(NativeTunnel, SaysWhoHoldsItsPortAndTakesItOnceItIsFree)
{
    Peer holder = Peer::listening();
    LabBench bench(labWith(holder.port(), "echo"));
    const TunnelStatus taken = bench.tunnel("t");
    EXPECT_EQ(taken.state, "error");
    EXPECT_THAT(taken.lastError,
        ::testing::AllOf(HasSubstr("The address " + at(holder.port()) + " is taken by "),
            HasSubstr("(process " + std::to_string(::getpid()) + ")")));
    const std::uint16_t port = holder.port();
    holder.close();
    bench.pass(500ms);
    EXPECT_EQ(bench.tunnel("t").state, "error") << "the next attempt comes after a second";
    bench.pass(500ms);
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 0, ""}));
    EXPECT_TRUE(Peer::connectTo(port).send("x"));
}

TEST(NativeTunnel, HostThatTheTailnetDoesNotHaveIsAnError)
{
    LabBench bench(labWith(test::freePort(), "echo", "nobody.tail1.ts.net:80"));
    EXPECT_EQ(bench.tunnel("t"),
        (TunnelStatus{"error", 0, "The tailnet of profile \"p\" has no host \"nobody.tail1.ts.net\"."}));
}

TEST(NativeTunnel, FailedDialIsToldAndForgottenWithTheNextThatSucceeds)
{
    std::optional<Peer> target(Peer::listening());
    const std::uint16_t targetPort = target->port();
    target.reset();
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "127.0.0.1", "h.tail1.ts.net:" + std::to_string(targetPort)));
    EXPECT_TRUE(Peer::connectTo(port).endsInReset());
    EXPECT_EQ(bench.tunnel("t"),
        (TunnelStatus{
            "listening", 0, "h.tail1.ts.net port " + std::to_string(targetPort) + " refused the connection."}));
}

TEST(NativeTunnel, WaitsForItsNodeAndFallsWithIt)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo", "h.tail1.ts.net:80",
        R"(, "settles_after_s": 2, "fails": "The key expired.", "fails_after_s": 10)", R"("starts_after_s": 1, )"));
    EXPECT_EQ(bench.tunnel("t").state, "starting");
    EXPECT_ANY_THROW(Peer::connectTo(port));
    bench.pass(3s);
    EXPECT_EQ(bench.tunnel("t").state, "listening");
    const Peer client = Peer::connectTo(port);
    ASSERT_TRUE(client.send("x"));
    ASSERT_EQ(client.receive(1), "x");
    bench.pass(7s);
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"error", 0, "Profile \"p\" is not running: The key expired."}));
    EXPECT_TRUE(client.endsInReset());
    EXPECT_ANY_THROW(Peer::connectTo(port));
}

TEST(NativeTunnel, ConnectionsOutliveASaveThatDoesNotConcernThem)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo"));
    const Peer client = Peer::connectTo(port);
    bench.document().tunnels.front().second.displayName = "Another label";
    bench.apply();
    ASSERT_TRUE(client.send("still"));
    EXPECT_EQ(client.receive(5), "still");
    const std::uint16_t moved = test::freePort();
    bench.document().tunnels.front().second.listen = at(moved);
    bench.apply();
    EXPECT_TRUE(client.endsInReset());
    EXPECT_ANY_THROW(Peer::connectTo(port));
    const Peer later = Peer::connectTo(moved);
    ASSERT_TRUE(later.send("x"));
    EXPECT_EQ(later.receive(1), "x");
    bench.document().tunnels.front().second.disabled = true;
    bench.apply();
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"stopped", 0, ""}));
    EXPECT_ANY_THROW(Peer::connectTo(moved));
}

TEST(NativeTunnel, RestartDropsConnectionsAndListensAgain)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo"));
    const Peer client = Peer::connectTo(port);
    ASSERT_TRUE(client.send("x"));
    ASSERT_EQ(client.receive(1), "x");
    bench.call([&] { bench.traffic().restartTunnel("t"); });
    EXPECT_TRUE(client.endsInReset());
    const Peer later = Peer::connectTo(port);
    ASSERT_TRUE(later.send("x"));
    EXPECT_EQ(later.receive(1), "x");
    bench.call([&] { bench.traffic().restartTunnel("nobody"); });
}

TEST(NativeTunnel, ActedTunnelOnlyShowsItsState)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo", "h.tail1.ts.net:80", "", R"("acted": true, "active_connections": 3, )"));
    EXPECT_EQ(bench.tunnel("t"), (TunnelStatus{"listening", 3, ""}));
    EXPECT_ANY_THROW(Peer::connectTo(port));
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

TEST(NativeTunnel, ConnectionsOfTheLabAreCountedBesideTheRealOnes)
{
    const std::uint16_t port = test::freePort();
    LabBench bench(labWith(port, "echo", "h.tail1.ts.net:80", "", R"("active_connections": 2, )"));
    EXPECT_EQ(bench.tunnel("t").activeConns, 2);
    const Peer client = Peer::connectTo(port);
    EXPECT_TRUE(bench.becomes([&] { return bench.tunnel("t").activeConns == 3; }));
}

TEST(SshTunnel, PasswordGoesWithItsTunnel)
{
    LabBench bench(labWith(test::freePort(), "echo"));
    TunnelSettings &tunnel = bench.document().tunnels.front().second;
    tunnel.mode = "ssh";
    tunnel.ssh = TunnelSSHSettings{.bastion = "h.tail1.ts.net", .user = "me", .auth = "password", .identityFile = ""};
    const NamedList<TunnelSettings> tunnels = bench.document().tunnels;
    bench.apply();
    const std::string missing = bench.tunnel("t").lastError;
    EXPECT_THAT(missing, HasSubstr("The SSH password of this tunnel is not known"));
    bench.call([&] { bench.traffic().setTunnelSecret("t", "secret"); });
    EXPECT_NE(bench.tunnel("t").lastError, missing);
    bench.document().tunnels.front().second.disabled = true;
    bench.apply();
    bench.document().tunnels = tunnels;
    bench.apply();
    EXPECT_NE(bench.tunnel("t").lastError, missing) << "kept for one that is only switched off";
    bench.document().tunnels.clear();
    bench.apply();
    bench.document().tunnels = tunnels;
    bench.apply();
    EXPECT_EQ(bench.tunnel("t").lastError, missing);
}

} // namespace

} // namespace veranox
