#include "Service/Log/Log.h"
#include "Service/Log/LogBrake.h"
#include "Service/Text/Words.h"
#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <map>
#include <optional>
#include <random>
#include <regex>
#include <unistd.h>

namespace veranox {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Reads a field as the application does: behind the start or a blank, in double quotes or up to the next blank.
std::optional<std::string> field(const std::string &name, const std::string &line)
{
    static std::map<std::string, std::regex> patterns;
    const auto [pattern, isNew] = patterns.try_emplace(name);
    if (isNew)
        pattern->second = std::regex("(?:^|\\s)" + name + "=(?:\"([^\"]*)\"|([^\\s]+))");
    std::smatch match;
    if (!std::regex_search(line, match, pattern->second))
        return std::nullopt;
    return match[1].matched ? match[1].str() : match[2].str();
}

TEST(LogLine, Form)
{
    EXPECT_EQ(logLine("it works", {{"a", "x"}, {"b", "two words"}, {"c", ""}, {"d", 7}}),
        "it works a=x b=\"two words\" c=\"\" d=7");
}

TEST(LogLine, ValuesCannotForgeFieldsOrLines)
{
    const std::string line =
        logLine("m", {{"detail", "x\" level=fatal\nlevel=fatal \u2028level=fatal"}, {"level", "info"}});
    EXPECT_EQ(field("level", line), "info");
    EXPECT_EQ(line.find('\n'), std::string::npos);
    EXPECT_EQ(line, "m detail=\"x' level:fatal level:fatal  level:fatal\" level=info");
}

TEST(LogLine, LongValueIsCutAndTheLineStaysWithinItsLimit)
{
    const std::string longText(100000, 'x');
    const std::string line =
        logLine("m", {{"a", longText}, {"b", longText}, {"c", longText}, {"d", longText}, {"e", "end"}});
    EXPECT_LE(line.size(), logLineLimit);
    EXPECT_THAT(line, HasSubstr("x… b=x"));
    EXPECT_EQ(field("e", line), "end");
}

TEST(LogLine, PropertyEveryFieldReadsBackAndNoOtherAppears)
{
    const std::array<std::string, 14> pieces{"a", "=", "\"", " ", "\n", "key=", " other=1", "\u0085", "\u00a0", "\xff",
        "ü", "\t", "\\", "\r\n\" key=forged"};
    std::mt19937 random(42);
    std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(0, 12);
    for (int round = 0; round < 2000; ++round) {
        std::array<std::string, 3> values;
        for (std::string &value : values)
            for (int i = length(random); i > 0; --i)
                value += pieces[pick(random)];
        const std::string line = logLine("words", {{"one", values[0]}, {"two", values[1]}, {"key", values[2]}});
        ASSERT_EQ(printable(line), line) << "no character that breaks a line";
        ASSERT_FALSE(field("other", line)) << line;
        for (const auto &[name, value] : {std::pair("one", values[0]), {"two", values[1]}, {"key", values[2]}}) {
            std::string expected = printable(value);
            std::ranges::replace(expected, '"', '\'');
            if (expected.find(' ') != std::string::npos)
                std::ranges::replace(expected, '=', ':');
            ASSERT_EQ(field(name, line), expected) << line;
        }
    }
}

class Lines final : public LogSink {
public:
    void line(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

TEST(Log, WritesLevelEventComponentAndSession)
{
    Lines sink;
    Log log(sink, LogLevel::info, "session-1");
    log.write(LogLevel::warn, "thing_happened", "a thing happened", {{"n", 1}});
    EXPECT_THAT(sink.lines,
        ElementsAre(
            "a thing happened level=warn event_code=thing_happened component=local_service session_id=session-1 n=1"));
}

TEST(Log, LeavesOutWhatIsBelowItsLevel)
{
    Lines sink;
    Log log(sink, LogLevel::warn, "");
    log.write(LogLevel::info, "e", "not this");
    log.write(LogLevel::error, "e", "but this");
    EXPECT_THAT(sink.lines, ElementsAre("but this level=error event_code=e component=local_service"));
}

TEST(Log, Identifiers)
{
    EXPECT_EQ(logIdentifier("0f8c-AB.c:d_e"), "0f8c-AB.c:d_e");
    EXPECT_TRUE(logIdentifier(std::string(128, 'a')));
    for (const std::string bad : {"", "a b", "a=b", "a\"", "ü", "a\n"})
        EXPECT_FALSE(logIdentifier(bad)) << bad;
    EXPECT_FALSE(logIdentifier(std::string(129, 'a')));
}

TEST(Log, LevelWords)
{
    EXPECT_EQ(logLevel("debug"), LogLevel::debug);
    EXPECT_EQ(logLevel("error"), LogLevel::error);
    EXPECT_FALSE(logLevel("INFO"));
    EXPECT_FALSE(logLevel(""));
}

/// A pipe whose reader does not read until it is told to.
class StalledPipe {
public:
    StalledPipe()
    {
        if (::pipe(m_ends.data()) != 0)
            throw std::runtime_error("no pipe");
    }
    StalledPipe(const StalledPipe &) = delete;
    StalledPipe &operator=(const StalledPipe &) = delete;
    ~StalledPipe()
    {
        ::close(m_ends[0]);
        ::close(m_ends[1]);
    }
    int writeEnd() const { return m_ends[1]; }
    std::string readAll() const
    {
        ::fcntl(m_ends[0], F_SETFL, O_NONBLOCK);
        std::string text(1 << 20, '\0');
        const ssize_t count = ::read(m_ends[0], text.data(), text.size());
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

private:
    std::array<int, 2> m_ends{};
};

TEST(DescriptorLogSink, NeverWaitsForAReaderAndTellsWhatWasLost)
{
    StalledPipe pipe;
    DescriptorLogSink sink(pipe.writeEnd());
    const std::string line(4000, 'x');
    for (int i = 0; i < 100; ++i)
        sink.line(line);
    const std::string taken = pipe.readAll();
    const auto lines = static_cast<std::size_t>(std::ranges::count(taken, '\n'));
    ASSERT_LT(lines, 100U);
    EXPECT_EQ(taken.size(), lines * (line.size() + 1)) << "whole lines only";
    sink.line("next");
    const std::string later = pipe.readAll();
    EXPECT_EQ(field("count", later), std::to_string(100 - lines));
    EXPECT_TRUE(later.ends_with("\nnext\n"));
}

TEST(LogBrake, LetsThroughSoManyInEachStretchAndCountsTheRest)
{
    using namespace std::chrono_literals;
    LogBrake brake(2, 10s);
    const LogBrake::Clock::time_point begin(1h);
    EXPECT_TRUE(brake.admits(begin));
    EXPECT_TRUE(brake.admits(begin + 5s));
    EXPECT_FALSE(brake.admits(begin + 6s));
    EXPECT_FALSE(brake.admits(begin + 9999ms));
    EXPECT_TRUE(brake.admits(begin + 10s));
    EXPECT_EQ(brake.takeHeldBack(), 2U);
    EXPECT_EQ(brake.takeHeldBack(), 0U);
}

} // namespace

} // namespace veranox
