#include "Tests/Service/Support/ApiBed.h"
#include "Tests/Service/Support/Document.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <gtest/gtest.h>

namespace veranox {

namespace {

class PathReport : public ::testing::Test {
protected:
    ControlAnswer get(const std::string &query) { return bed.ask("GET", "/api/reports/path" + query); }

    test::ApiBed bed;
};

TEST_F(PathReport, AsksWhatTheQuerySays)
{
    bed.traffic().report = {{"profile", "work"}};
    const ControlAnswer answer = get("?target=https%3A//wiki.work.ts.net/a%20b?c&netcheck=true&ping_count=5");
    EXPECT_EQ(answer.status, 200U);
    EXPECT_EQ(answer.body, (boost::json::value{{"profile", "work"}}));
    ASSERT_EQ(bed.traffic().questions.size(), 1U);
    EXPECT_EQ(bed.traffic().questions[0].target, "https://wiki.work.ts.net/a b?c");
    EXPECT_TRUE(bed.traffic().questions[0].netcheck);
    EXPECT_EQ(bed.traffic().questions[0].pingCount, 5U);
}

TEST_F(PathReport, ATargetKeepsAQueryOfItsOwn)
{
    const std::string options = "&netcheck=true&ping_count=3";
    for (const std::string target :
        {"http://a.b/?a=1&target=2", "http://a.b/?netcheck=maybe", "http://a.b/?x&netcheck=no", "a&b",
            "a?ping_count=99&ping_count=0&c", "a&&", "a&netcheck", "target=a", "a?netcheck=false&ping_count=7"}) {
        bed.traffic().questions.clear();
        const ControlAnswer answer = get("?target=" + target + options);
        ASSERT_EQ(answer.status, 200U) << target << ": " << test::errorOf(answer);
        EXPECT_EQ(bed.traffic().questions.at(0).target, target);
        EXPECT_TRUE(bed.traffic().questions.at(0).netcheck) << target;
        EXPECT_EQ(bed.traffic().questions.at(0).pingCount, 3U) << target;
    }
}

TEST_F(PathReport, OptionsStandOnEitherSideOfTheTarget)
{
    EXPECT_EQ(get("?ping_count=7&other=1&target=a&b&netcheck=false").status, 200U);
    EXPECT_EQ(bed.traffic().questions.at(0).target, "a&b");
    EXPECT_FALSE(bed.traffic().questions.at(0).netcheck);
    EXPECT_EQ(bed.traffic().questions.at(0).pingCount, 7U);
    EXPECT_EQ(get("?target=a&ping_count=2&netcheck=false").status, 200U) << "in either order";
    EXPECT_EQ(bed.traffic().questions.at(1).target, "a");
    EXPECT_FALSE(bed.traffic().questions.at(1).netcheck);
    EXPECT_EQ(bed.traffic().questions.at(1).pingCount, 2U);
    EXPECT_EQ(get("?target=a").status, 200U);
    EXPECT_EQ(bed.traffic().questions.at(2).pingCount, 3U) << "when nothing is said";
}

TEST_F(PathReport, NeedsNoToken)
{
    ControlRequest request = bed.request("GET", "/api/reports/path?target=a");
    request.tokens.clear();
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 200U);
}

TEST_F(PathReport, Refusals)
{
    const std::string noTarget = "The query needs a target: a URL, host:port, a host name or an address.";
    const std::pair<std::string, std::string> cases[] = {{"", noTarget}, {"?", noTarget}, {"?target=", noTarget},
        {"?Target=a", noTarget}, {"?a=target=b", noTarget}, {"?target=&netcheck=true", noTarget},
        {"?netcheck=true&target=a&netcheck=true", "The key netcheck stands twice in the query."},
        {"?target=%ff", "The query of the request is not well formed."},
        {"?target=%zz", "The query of the request is not well formed."},
        {"?target=a%0Ab", "The target holds a control character."},
        {"?target=" + std::string(2049, 'a'), "The target has more than 2048 bytes."},
        {"?target=a&netcheck=yes", "The value of netcheck must be true or false."},
        {"?target=a&ping_count=0", "The value of ping_count must be a whole number from 1 to 10."},
        {"?target=a&ping_count=11", "The value of ping_count must be a whole number from 1 to 10."},
        {"?target=a&ping_count=x", "The value of ping_count must be a whole number from 1 to 10."}};
    for (const auto &[query, sentence] : cases) {
        const ControlAnswer answer = get(query);
        EXPECT_EQ(test::errorOf(answer), sentence) << query;
        EXPECT_EQ(answer.status, 400U) << query;
    }
    EXPECT_TRUE(bed.traffic().questions.empty());
}

/// Reports that come when a test lets them.
class HeldTraffic final : public Traffic {
public:
    explicit HeldTraffic(boost::asio::io_context &context) : m_gate(context)
    {
        m_gate.expires_at(boost::asio::steady_timer::time_point::max());
    }
    void apply(std::shared_ptr<const ConfigDocument>) override { }
    void nodesChanged() override { }
    TunnelStatus tunnelStatus(const std::string &) const override { return {}; }
    PublicationStatus publicationStatus(const std::string &) const override { return {}; }
    void restartTunnel(const std::string &) override { }
    void restartPublication(const std::string &) override { }
    void setTunnelSecret(const std::string &, std::string) override { }
    void stop() override { }
    boost::asio::awaitable<boost::json::object> pathReport(PathQuestion) override
    {
        boost::system::error_code released;
        co_await m_gate.async_wait(boost::asio::redirect_error(boost::asio::use_awaitable, released));
        co_return boost::json::object{};
    }
    void release() { m_gate.cancel(); }

private:
    boost::asio::steady_timer m_gate;
};

TEST_F(PathReport, OnlyAFewRunAtATime)
{
    boost::asio::io_context context(1);
    HeldTraffic traffic(context);
    ControlApi api(bed.parts(test::ApiBed::port, traffic), RequestGuard(ControlToken::random(), test::ApiBed::port));
    std::vector<unsigned> statuses;
    const auto ask = [&] {
        boost::asio::co_spawn(context, api.answer(bed.request("GET", "/api/reports/path?target=a")),
            [&](const std::exception_ptr &, const ControlAnswer &answer) { statuses.push_back(answer.status); });
        context.poll();
    };
    const std::size_t most = test::Document("docs/control-api.md").number("the path report; at most ", " at a time");
    ASSERT_EQ(most, 8U);
    for (std::size_t i = 0; i <= most; ++i)
        ask();
    EXPECT_EQ(statuses, (std::vector<unsigned>{503U}));
    traffic.release();
    context.poll();
    EXPECT_EQ(statuses, (std::vector<unsigned>{503U, 200U, 200U, 200U, 200U, 200U, 200U, 200U, 200U}));
    ask();
    traffic.release();
    context.poll();
    EXPECT_EQ(statuses.back(), 200U) << "there is room again";
}

} // namespace

} // namespace veranox
