#include "Service/Net/Turns.h"
#include <algorithm>
#include <boost/asio/post.hpp>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace veranox {

namespace {

/// Writes down its turns, and stands in line again until it has had so many.
class Taker final : public Turns::Taker {
public:
    Taker(Turns &turns, std::string &log, char name, int wanted)
        : m_turns(turns),
          m_log(log),
          m_name(name),
          m_wanted(wanted)
    {
    }
    void takeTurn() override
    {
        m_log += m_name;
        if (--m_wanted > 0)
            m_turns.add(*this);
    }

private:
    Turns &m_turns;
    std::string &m_log;
    char m_name;
    int m_wanted;
};

class TurnsTest : public ::testing::Test {
protected:
    boost::asio::io_context context{1};
    Turns turns{context};
    std::string log;
};

TEST_F(TurnsTest, GoRound)
{
    Taker a(turns, log, 'a', 3);
    Taker b(turns, log, 'b', 2);
    Taker c(turns, log, 'c', 1);
    for (Taker *taker : {&a, &b, &c, &a})
        turns.add(*taker);
    context.run();
    EXPECT_EQ(log, "abcaba") << "and nobody stands in the line twice";
}

TEST_F(TurnsTest, WhoHasBecomeReadyGoesBetweenAnyTwo)
{
    std::vector<Taker> crowd;
    crowd.reserve(100);
    for (int i = 0; i < 100; ++i)
        crowd.emplace_back(turns, log, 'm', 1);
    for (Taker &taker : crowd)
        turns.add(taker);
    boost::asio::post(context, [this] { log += '!'; });
    context.run();
    EXPECT_LE(log.find('!'), 1U);
    EXPECT_EQ(std::ranges::count(log, 'm'), 100);
}

TEST_F(TurnsTest, ManyShortRunsDoNotStarveTheLine)
{
    std::vector<Taker> crowd;
    crowd.reserve(10);
    for (int i = 0; i < 10; ++i)
        crowd.emplace_back(turns, log, 'm', 1);
    for (Taker &taker : crowd)
        turns.add(taker);
    for (int i = 0; i < 40; ++i)
        turns.countShortRun();
    context.run_one();
    EXPECT_EQ(log, "mmmmmmmmmm") << "as much time for the line as the short runs took";
}

TEST_F(TurnsTest, WhoDiesLeavesTheLine)
{
    {
        Taker gone(turns, log, 'x', 1);
        turns.add(gone);
    }
    Taker stays(turns, log, 's', 1);
    turns.add(stays);
    context.run();
    EXPECT_EQ(log, "s");
}

} // namespace

} // namespace veranox
