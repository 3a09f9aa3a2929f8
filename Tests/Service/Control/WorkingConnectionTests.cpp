#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <atomic>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <gtest/gtest.h>
#include <thread>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::RawClient;
using test::RunningServer;

/// Connections whose answer is being made.
class WorkingConnections : public ::testing::Test {
protected:
    /// Begins a report that takes until release().
    void beginReport(RunningServer &server, RawClient &client)
    {
        server.holdReports([this] { return wait(); });
        const int before = begun;
        ASSERT_TRUE(client.send(client.request("GET", "/api/reports/path?target=a")));
        while (begun == before)
            std::this_thread::yield();
    }
    void release() { isReleased = true; }

private:
    boost::asio::awaitable<void> wait()
    {
        ++begun;
        boost::asio::steady_timer timer(co_await boost::asio::this_coro::executor);
        while (!isReleased) {
            timer.expires_after(1ms);
            co_await timer.async_wait(boost::asio::use_awaitable);
        }
    }

    std::atomic<int> begun = 0;
    std::atomic<bool> isReleased = false;
};

TEST_F(WorkingConnections, MakeNoRoomForNewOnes)
{
    ControlLimits limits;
    limits.connections = 2;
    RunningServer server(limits);
    RawClient first(server.port());
    beginReport(server, first);
    RawClient second(server.port());
    beginReport(server, second);
    RawClient third(server.port());
    EXPECT_TRUE(third.isClosedByServer());
    release();
    EXPECT_EQ(first.receive().result_int(), 200U);
    EXPECT_EQ(second.receive().result_int(), 200U);
}

TEST_F(WorkingConnections, EndWithTheirAnswerWhenTheServiceEnds)
{
    ControlLimits limits;
    limits.stop = 20000ms;
    RunningServer server(limits);
    RawClient client(server.port());
    beginReport(server, client);
    RawClient other(server.port());
    EXPECT_EQ(other.exchange(other.request("POST", "/api/shutdown", server.tokenLine())).result_int(), 200U);
    EXPECT_TRUE(other.isClosedByServer());
    release();
    const RawClient::Answer answer = client.receive();
    EXPECT_EQ(answer.result_int(), 200U);
    EXPECT_FALSE(answer.keep_alive());
    EXPECT_TRUE(client.isClosedByServer());
    server.awaitEnd();
}

} // namespace

} // namespace veranox
