#include "Tests/Service/Contract/ServiceContract.h"
#include "Tests/Service/Support/Peer.h"
#include <csignal>
#include <gmock/gmock.h>
#include <list>

namespace veranox {

namespace {

using namespace test::contract;
using test::Peer;
using test::ServiceProcess;
using ::testing::HasSubstr;

/// A tunnel to a target of the test's own, and a publication of it over TLS.
class Crowd : public ServiceContract {
protected:
    static constexpr const char *nodeAddress = "127.80.0.21";
    static constexpr std::uint16_t publishedPort = 8443;

    Arguments writeLab()
    {
        const auto at = [](std::uint16_t port) { return "127.0.0.1:" + std::to_string(port); };
        home.write("lab.json",
            R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"h": ")" + at(target.port())
                + R"("}}}, "profiles": {"p": {"tailnet": "net", "node_address": ")" + nodeAddress
                + R"(", "config": {"Hostname": "desk"}}}, "tunnels": {"t": {"config": {"Profile": "p",
                "Target": "h.tail1.ts.net:80", "Listen": ")"
                + at(tunnel) + R"("}}}, "publications": {"web": {"config": {"Profile": "p", "Port": )"
                + std::to_string(publishedPort) + R"(, "TLS": true, "Target": ")" + at(target.port()) + R"("}}}})");
        return {"gui", "serve", "--listen", "127.0.0.1:0", "--lab", (home / "lab.json").string()};
    }
    bool reaches() const
    {
        const Peer client = Peer::connectTo(tunnel);
        const Peer far = target.accept();
        return client.send("x") && far.receive(1) == "x";
    }

    const Peer target = Peer::listening();
    const std::uint16_t tunnel = Peer::listening().port();
};

TEST_F(Crowd, TakesNothingFromControlWhenFilesAreFew)
{
    constexpr unsigned files = 128;
    constexpr int connections = 200;
    ServiceProcess service(home.path(), writeLab(), {}, files);
    const std::uint16_t port = service.awaitPort();
    std::list<Peer> clients;
    for (int i = 0; i < connections; ++i)
        clients.push_back(Peer::connectTo(tunnel));
    int refused = 0;
    for (auto client = clients.rbegin(); refused == 0 && client != clients.rend(); ++client)
        refused += client->endsInReset() ? 1 : 0;
    EXPECT_EQ(refused, 1) << "the last one learns that there is no room, and at once";
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(get(port, "/api/tunnels").as_array().size(), 1U);
    service.signal(SIGTERM);
    EXPECT_EQ(service.awaitEnd(), 0);
    EXPECT_THAT(service.output(), HasSubstr("event_code=connections_refused"));
}

TEST_F(Crowd, SilentTlsClientsBlockNobody)
{
    constexpr unsigned files = 128;
    constexpr int connections = 200;
    ServiceProcess service(home.path(), writeLab(), {}, files);
    const std::uint16_t port = service.awaitPort();
    std::list<Peer> silent;
    for (int i = 0; i < connections; ++i)
        silent.push_back(Peer::connectTo(publishedPort, nodeAddress));
    EXPECT_TRUE(reaches()) << "the tunnel has a share of its own";
    EXPECT_EQ(get(port, "/api/publications").as_array().size(), 1U);
}

TEST_F(Crowd, EndsWithinASecondWhateverItsConnectionsWaitFor)
{
    ServiceProcess service(home.path(), writeLab());
    service.awaitPort();
    const Peer silent = Peer::connectTo(publishedPort, nodeAddress);
    const Peer idle = Peer::connectTo(tunnel);
    const Peer far = target.accept();
    ASSERT_TRUE(idle.send("x") && far.receive(1) == "x");
    idle.finishSending();
    const auto begin = std::chrono::steady_clock::now();
    service.signal(SIGTERM);
    EXPECT_EQ(service.awaitEnd(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    EXPECT_THAT(service.output(), HasSubstr("outcome=ok"));
    EXPECT_TRUE(silent.endsInReset());
}

} // namespace

} // namespace veranox
