#include "Service/Net/LabCertificate.h"
#include "Tests/Service/Support/ForwardBench.h"
#include "Tests/Service/Support/TlsPeer.h"
#include <gmock/gmock.h>
#include <list>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::ForwardBench;
using test::Peer;
using test::TlsPeer;
using Door = test::ForwardBench::Door;

/// A listener that ends TLS, and a local service behind it.
class TlsConnection : public ::testing::Test {
protected:
    static Route route(std::uint16_t port, ConnectionLimits limits = {})
    {
        Route result = test::to(port, limits);
        result.tls = std::make_shared<boost::asio::ssl::context>(selfSignedContext("desk.test"));
        return result;
    }

    ForwardBench bench;
    const Peer service = Peer::listening();
    Door door{bench, route(service.port())};
};

TEST_F(TlsConnection, EachHalfEndsByItself)
{
    TlsPeer client(door.connect());
    const Peer far = service.accept();
    ASSERT_TRUE(client.send("question"));
    client.finishSending();
    EXPECT_EQ(far.receiveAll(), "question") << "the farewell of the client is the end of its half";
    ASSERT_TRUE(far.send("answer")) << "the other half stays open";
    EXPECT_EQ(client.receive(6), "answer");
    far.finishSending();
    EXPECT_EQ(client.receiveAll(), "");
    EXPECT_EQ(client.end(), TlsPeer::End::inOrder);
    EXPECT_TRUE(door.closes(CloseReason::ended));
}

TEST_F(TlsConnection, TheServiceMayEndItsHalfFirst)
{
    TlsPeer client(door.connect());
    const Peer far = service.accept();
    ASSERT_TRUE(far.send("greeting"));
    far.finishSending();
    EXPECT_EQ(client.receiveAll(), "greeting");
    EXPECT_EQ(client.end(), TlsPeer::End::inOrder);
    ASSERT_TRUE(client.send("late upload"));
    EXPECT_EQ(far.receive(11), "late upload");
    client.finishSending();
    EXPECT_EQ(far.receiveAll(), "");
    EXPECT_TRUE(door.closes(CloseReason::ended));
}

TEST_F(TlsConnection, UploadThatIsCutDoesNotLookWhole)
{
    TlsPeer client(door.connect());
    const Peer far = service.accept();
    ASSERT_TRUE(client.send("half of an upl"));
    ASSERT_EQ(far.receive(14), "half of an upl");
    client.peer().finishSending(); // TCP ends, but nobody said farewell
    EXPECT_TRUE(far.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::resetByClient));
}

TEST_F(TlsConnection, ResetOfTheClientIsOneForTheService)
{
    TlsPeer client(door.connect());
    const Peer far = service.accept();
    ASSERT_TRUE(client.send("x"));
    ASSERT_EQ(far.receive(1), "x");
    client.peer().reset();
    EXPECT_TRUE(far.endsInReset());
}

TEST_F(TlsConnection, ResetOfTheServiceIsNoFarewellToTheClient)
{
    TlsPeer client(door.connect());
    Peer far = service.accept();
    ASSERT_TRUE(far.send("half of a downl"));
    ASSERT_EQ(client.receive(15), "half of a downl");
    far.reset();
    EXPECT_EQ(client.receiveAll(), "");
    EXPECT_EQ(client.end(), TlsPeer::End::cut);
    EXPECT_TRUE(door.closes(CloseReason::resetByTarget));
}

TEST_F(TlsConnection, MuchGoesBothWaysAtOnce)
{
    TlsPeer client(door.connect());
    const Peer far = service.accept();
    const std::string up(1'500'000, 'u');
    const std::string down(1'500'000, 'd');
    std::thread serving([&] {
        std::thread sending([&] {
            EXPECT_TRUE(far.send(down));
            far.finishSending();
        });
        EXPECT_EQ(far.receiveAll(), up);
        sending.join();
    });
    EXPECT_TRUE(client.send(up)) << "what comes meanwhile waits in the sockets";
    client.finishSending();
    EXPECT_EQ(client.receiveAll(), down);
    serving.join();
    EXPECT_EQ(client.end(), TlsPeer::End::inOrder);
    EXPECT_TRUE(door.closes(CloseReason::ended));
}

TEST_F(TlsConnection, WhoSpeaksNoTlsIsReset)
{
    const Peer client = door.connect();
    ASSERT_TRUE(client.send("GET / HTTP/1.1\r\nHost: desk.test\r\n\r\n"));
    EXPECT_TRUE(client.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::handshakeFailed));
}

TEST_F(TlsConnection, SilentClientIsCutAfterItsTime)
{
    const Door hasty(bench, route(service.port(), {.handshake = 30ms}));
    EXPECT_TRUE(hasty.connect().endsInReset());
    EXPECT_TRUE(hasty.closes(CloseReason::handshakeTookTooLong));
}

TEST_F(TlsConnection, StopEndsThoseWhoHaveNotShakenHands)
{
    const Peer client = door.connect();
    ASSERT_TRUE(test::becomesTrue([&] { return door.tally().active == 1; }));
    door.stop();
    EXPECT_TRUE(client.endsInReset());
    EXPECT_TRUE(door.closes(CloseReason::stopped));
}

TEST_F(TlsConnection, SilentClientsDoNotBlockTheDoor)
{
    ForwardBench narrow({.descriptors = 32, .patience = 0ms});
    const Door full(narrow, route(service.port()));
    std::list<Peer> silent;
    for (int i = 0; i < 100; ++i)
        silent.push_back(full.connect());
    ASSERT_TRUE(test::becomesTrue([&] { return full.tally().closedFor(CloseReason::shed) > 80; }));
    TlsPeer client(full.connect());
    const Peer far = service.accept();
    ASSERT_TRUE(client.send("x"));
    EXPECT_EQ(far.receive(1), "x");
}

} // namespace

} // namespace veranox
