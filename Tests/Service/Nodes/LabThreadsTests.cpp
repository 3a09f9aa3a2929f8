#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Tests/Service/Support/Awaited.h"
#include "Tests/Service/Support/FakeTime.h"
#include <atomic>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <thread>
#include <vector>

namespace veranox {

namespace {

namespace asio = boost::asio;

const std::string lab = R"({"version": 1,
    "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"echo": "echo"}}},
    "profiles": {"p": {"tailnet": "net"}}})";

/// Runs it in as many threads at once, each with its number.
void inThreads(int count, const std::function<void(int)> &work)
{
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        threads.emplace_back(work, i);
    for (std::thread &thread : threads)
        thread.join();
}

asio::awaitable<std::optional<asio::ip::tcp::socket>> dialEcho(LabEngine *engine)
{
    co_return co_await engine->dial("p", "echo.tail1.ts.net", 7);
}

/// Dials the echo from an io_context that nobody runs afterwards, so that the host has to answer by itself.
bool isEchoed(LabEngine &engine)
{
    asio::io_context context(1);
    auto dialled = asio::co_spawn(context, dialEcho(&engine), asio::use_future);
    context.run();
    asio::ip::tcp::socket socket = dialled.get().value();
    std::string answer(5, ' ');
    asio::write(socket, asio::buffer("hello", 5));
    asio::read(socket, asio::buffer(answer));
    return answer == "hello";
}

TEST(LabThreads, EachDialsOnAContextOfItsOwn)
{
    test::FakeTime time;
    LabEngine engine(parseLab(lab), time);
    std::atomic<int> echoed = 0;
    inThreads(4, [&](int) {
        for (int i = 0; i < 20; ++i)
            echoed += isEchoed(engine) ? 1 : 0;
    });
    EXPECT_EQ(echoed, 80);
    engine.stop();
    EXPECT_THROW(isEchoed(engine), std::exception) << "the hosts are gone for good";
}

TEST(LabThreads, ManyPublishSignInAndLookAtOnce)
{
    test::FakeTime time;
    LabEngine engine(parseLab(lab), time);
    std::atomic<int> opened = 0;
    std::atomic<int> refused = 0;
    inThreads(4, [&](int number) {
        asio::io_context context(1);
        for (int i = 0; i < 50; ++i) {
            try {
                const NodePort port = engine.openPort(context.get_executor(), "p", "node", 8080);
                ++opened;
            } catch (const NetworkProblem &) {
                ++refused;
            }
            if (number % 2 == 0)
                test::awaited(engine.logout("p"));
            else
                test::awaited(engine.login("p"));
            engine.profileStatus("p");
            engine.hostProblem("p", "node");
            engine.nextChange();
        }
    });
    EXPECT_EQ(opened + refused, 200);
    EXPECT_GE(opened, 50) << "one at a time";
    asio::io_context context(1);
    EXPECT_NO_THROW(engine.openPort(context.get_executor(), "p", "node", 8080)) << "each lease has ended";
}

} // namespace

} // namespace veranox
