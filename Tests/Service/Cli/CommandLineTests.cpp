#include "Service/Cli/CommandLine.h"
#include "Service/Text/ServiceProblem.h"
#include <cstdlib>
#include <gmock/gmock.h>
#include <optional>

namespace veranox {

namespace {

using ::testing::HasSubstr;
using Words = std::vector<std::string>;

/// Sets VERANOX_LAB for one test.
class LabVariable {
public:
    explicit LabVariable(const char *value)
    {
        if (value)
            ::setenv("VERANOX_LAB", value, 1);
        else
            ::unsetenv("VERANOX_LAB");
    }
    LabVariable(const LabVariable &) = delete;
    LabVariable &operator=(const LabVariable &) = delete;
    ~LabVariable() { ::unsetenv("VERANOX_LAB"); }
};

GuiServeCommand serve(Words words)
{
    return std::get<GuiServeCommand>(parseCommandLine(std::move(words)));
}
std::string printed(Words words)
{
    return std::get<PrintCommand>(parseCommandLine(std::move(words))).text;
}

std::string complaintOf(Words words)
{
    try {
        parseCommandLine(std::move(words));
    } catch (const ServiceProblem &problem) {
        return problem.what();
    }
    return "";
}

TEST(CommandLine, ServeWithoutOptions)
{
    const LabVariable none(nullptr);
    EXPECT_EQ(serve({"gui", "serve"}), (GuiServeCommand{"127.0.0.1:43200", "", LogLevel::info}));
}

TEST(CommandLine, ServeWithOptions)
{
    const LabVariable none(nullptr);
    EXPECT_EQ(serve({"gui", "serve", "--listen", "[::1]:1", "--lab", "demo", "--log-level", "debug"}),
        (GuiServeCommand{"[::1]:1", "demo", LogLevel::debug}));
    EXPECT_EQ(serve({"gui", "serve", "--listen=localhost:2"}).listen, "localhost:2");
}

TEST(CommandLine, LabFromTheEnvironmentUnlessAnOptionNamesAnother)
{
    const LabVariable demo("demo");
    EXPECT_EQ(serve({"gui", "serve"}).lab, "demo");
    EXPECT_EQ(serve({"gui", "serve", "--lab", "/my.json"}).lab, "/my.json");
    const LabVariable empty("");
    EXPECT_EQ(serve({"gui", "serve"}).lab, "");
}

TEST(CommandLine, VersionAndHelp)
{
    EXPECT_THAT(printed({"--version"}), ::testing::MatchesRegex("veranox [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_THAT(printed({"--help"}), HasSubstr("gui"));
    EXPECT_THAT(printed({"gui", "--help"}), HasSubstr("serve"));
    EXPECT_THAT(printed({"gui", "serve", "--help"}), HasSubstr("--listen HOST:PORT"));
}

TEST(CommandLine, MistakesGetASentence)
{
    const Words table[] = {{}, {"gui"}, {"serve"}, {"frob"}, {"--frob"}, {"gui", "serve", "extra"},
        {"gui", "serve", "--frob"}, {"gui", "serve", "--listen"}, {"gui", "serve", "--lab"},
        {"gui", "serve", "--log-level", "loud"}, {"gui", "serve", "--listen", "a", "--listen", "b"}, {""}, {"gui", ""}};
    for (const Words &words : table) {
        const std::string complaint = complaintOf(words);
        EXPECT_TRUE(complaint.ends_with('.')) << ::testing::PrintToString(words) << ": " << complaint;
        EXPECT_EQ(complaint.find('\n'), std::string::npos) << complaint;
    }
}

} // namespace

} // namespace veranox
