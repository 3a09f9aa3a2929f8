#include "Service/Files/Worker.h"
#include <atomic>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <vector>

namespace veranox {

namespace {

namespace asio = boost::asio;

/// A gate that work waits at.
class Gate {
public:
    void open()
    {
        m_isOpen = true;
        m_isOpen.notify_all();
    }
    void pass() { m_isOpen.wait(false); }

private:
    std::atomic<bool> m_isOpen = false;
};

class WorkerTest : public ::testing::Test {
protected:
    asio::awaitable<void> twice(Worker *worker, int number)
    {
        results.push_back(co_await worker->run([number] { return 2 * number; }));
        EXPECT_EQ(std::this_thread::get_id(), here);
    }
    asio::awaitable<void> waitAt(Worker *worker, Gate *gate)
    {
        co_await worker->run([gate] { gate->pass(); });
        results.push_back(0);
    }
    asio::awaitable<void> fail(Worker *worker)
    {
        std::string said;
        try {
            co_await worker->run([]() -> int { throw std::runtime_error("no"); });
        } catch (const std::runtime_error &failure) {
            said = failure.what();
        }
        EXPECT_EQ(said, "no");
        results.push_back(-1);
    }

    std::thread::id here = std::this_thread::get_id();
    std::vector<int> results;
    asio::io_context context{1};
};

TEST_F(WorkerTest, GivesResultsAndFailuresBackInOrder)
{
    Worker worker(8);
    asio::co_spawn(context, twice(&worker, 1), asio::detached);
    asio::co_spawn(context, fail(&worker), asio::detached);
    asio::co_spawn(context, twice(&worker, 2), asio::detached);
    context.run();
    EXPECT_EQ(results, (std::vector<int>{2, -1, 4}));
}

TEST_F(WorkerTest, TellsWhenAsMuchWaitsAsMay)
{
    Gate gate;
    Worker worker(2);
    asio::co_spawn(context, waitAt(&worker, &gate), asio::detached);
    for (int i = 0; i < 3; ++i)
        asio::co_spawn(context, twice(&worker, i), asio::detached);
    context.poll();
    EXPECT_FALSE(worker.hasRoom());
    gate.open();
    context.run();
    EXPECT_TRUE(worker.hasRoom());
    EXPECT_EQ(results, (std::vector<int>{0, 0, 2, 4}));
}

/// The context goes while the work goes on, as at the end of a service whose disk hangs.
TEST_F(WorkerTest, StoppedItForgetsWhoWaits)
{
    Gate gate;
    std::optional<Worker> worker(std::in_place, 8);
    {
        asio::io_context ending(1);
        asio::co_spawn(ending, waitAt(&*worker, &gate), asio::detached);
        asio::co_spawn(ending, twice(&*worker, 1), asio::detached);
        ending.poll();
        worker->stop();
        worker->stop();
    }
    gate.open();
    worker.reset();
    EXPECT_TRUE(results.empty());
}

} // namespace

} // namespace veranox
