#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <list>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::RawClient;
using test::RunningServer;
using Clock = std::chrono::steady_clock;

/// How long a well-behaved client waits at most for an answer beside one that is not. It takes a millisecond beside
/// nobody; the rest is for a machine that has other things to do.
constexpr std::chrono::milliseconds bound{2000};

/// The longest of several requests, each on a connection of its own.
std::chrono::milliseconds slowestAnswer(std::uint16_t port, int requests = 50)
{
    Clock::duration slowest{0};
    for (int i = 0; i < requests; ++i) {
        const Clock::time_point begin = Clock::now();
        RawClient client(port);
        EXPECT_EQ(client.exchange(client.request("GET", "/api/health")).result_int(), 200U);
        slowest = std::max(slowest, Clock::now() - begin);
    }
    return std::chrono::ceil<std::chrono::milliseconds>(slowest);
}

/// Does something over and over until it goes.
class Nuisance {
public:
    explicit Nuisance(std::function<bool()> act)
        : m_thread([this, act = std::move(act)] {
              while (!m_ends && act()) { }
          })
    {
    }
    Nuisance(const Nuisance &) = delete;
    Nuisance &operator=(const Nuisance &) = delete;
    ~Nuisance()
    {
        m_ends = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

std::string repeated(const std::string &text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

/// Asks without end and never reads; cut off, it comes back.
class DeafClient {
public:
    explicit DeafClient(std::uint16_t port) : m_port(port) { }

    /// False once there is no server any more.
    bool askMore()
    {
        try {
            if (!m_client)
                m_client = std::make_shared<RawClient>(m_port);
        } catch (const boost::system::system_error &) {
            return false;
        }
        if (!m_client->send(repeated(m_client->request("GET", "/api/config"), 100)))
            m_client.reset();
        return true;
    }

private:
    std::uint16_t m_port;
    std::shared_ptr<RawClient> m_client;
};

/// Saves a configuration whose answer fills the buffers of a connection soon.
std::string largeSave(const RawClient &client, const RunningServer &server)
{
    std::string suffixes;
    for (int i = 0; i < 5000; ++i)
        suffixes += (i > 0 ? R"(,".s)" : R"(".s)") + std::to_string(i) + ".net\"";
    const std::string body = R"({"Version": 1, "Router": {}, "Profiles": {"p": {"Suffixes": [)" + suffixes + R"(]}},
        "Tailscale": {"TailscaleBin": "a", "TailscaledBin": "b"}, "Paths": {"AppSupportDir": "c", "ConfigDir": "d"},
        "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
            "AllowUnknownTSNet": false}})";
    return client.request("POST", "/api/config?force=true",
               server.tokenLine() + "Content-Length: " + std::to_string(body.size()) + "\r\n")
        + body;
}

TEST(Starvation, BesideABodyThatDrips)
{
    RunningServer server({});
    RawClient slow(server.port());
    slow.send(slow.request("POST", "/api/config?force=true", server.tokenLine() + "Content-Length: 1000000\r\n"));
    const Nuisance drip([&] {
        std::this_thread::sleep_for(1ms);
        return slow.send("x");
    });
    EXPECT_LT(slowestAnswer(server.port()), bound);
}

TEST(Starvation, BesideABodyWithoutEnd)
{
    RunningServer server({});
    std::optional<RawClient> huge;
    const std::string piece = "10000\r\n" + std::string(0x10000, 'x') + "\r\n";
    const Nuisance flood([&] {
        if (!huge) {
            huge.emplace(server.port());
            huge->send(
                huge->request("POST", "/api/config?force=true", server.tokenLine() + "Transfer-Encoding: chunked\r\n"));
        }
        if (!huge->send(piece))
            huge.reset(); // cut off: once more
        return true;
    });
    EXPECT_LT(slowestAnswer(server.port()), bound);
}

TEST(Starvation, BesideBodiesOfTheLargestSizeThatAreNonsense)
{
    RunningServer server({});
    RawClient large(server.port());
    const std::string body = R"({"Profiles": {")" + std::string(1000000, 'x') + R"(": {}}, "a": )";
    const std::string request = large.request("POST", "/api/config?force=true",
                                    server.tokenLine() + "Content-Length: " + std::to_string(body.size()) + "\r\n")
        + body;
    const Nuisance flood([&] { return large.exchange(request).result_int() == 400; });
    EXPECT_LT(slowestAnswer(server.port()), bound);
}

TEST(Starvation, BesideACrowdThatSaysHalfARequestEach)
{
    RunningServer server({});
    std::list<RawClient> crowd;
    for (int i = 0; i < 200; ++i) {
        crowd.emplace_back(server.port());
        crowd.back().send("GET /api/profiles HTTP/1.1\r\nHos");
    }
    const Nuisance more([&] {
        crowd.emplace_back(server.port());
        crowd.back().send("G");
        crowd.pop_front();
        std::this_thread::sleep_for(1ms);
        return true;
    });
    EXPECT_LT(slowestAnswer(server.port()), bound);
}

TEST(Starvation, BesideACrowdThatNeverReadsItsAnswers)
{
    ControlLimits limits;
    limits.connections = 8;
    RunningServer server(limits);
    RawClient owner(server.port());
    ASSERT_EQ(owner.exchange(largeSave(owner, server)).result_int(), 200U);
    std::list<DeafClient> clients(2 * limits.connections, DeafClient(server.port()));
    std::list<Nuisance> crowd;
    for (DeafClient &client : clients)
        crowd.emplace_back([&client] { return client.askMore(); });
    EXPECT_LT(slowestAnswer(server.port(), 20), bound) << "those that take no answer make room";
    server.end(); // lets go whoever is stuck
}

TEST(Starvation, BesideAClientThatPipelinesWithoutEnd)
{
    RunningServer server({}, LogLevel::info);
    RawClient greedy(server.port());
    const std::string many = repeated(greedy.request("GET", "/api/config"), 200);
    const Nuisance flood([&] {
        if (!greedy.send(many))
            return false;
        for (int i = 0; i < 200; ++i)
            greedy.receive();
        return true;
    });
    EXPECT_LT(slowestAnswer(server.port()), bound);
}

} // namespace

} // namespace veranox
