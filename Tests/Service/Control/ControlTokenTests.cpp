#include "Service/Control/ControlToken.h"
#include "Service/Text/ServiceProblem.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>
#include <regex>
#include <set>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

std::string withoutLineEnd(std::string text)
{
    EXPECT_TRUE(text.ends_with('\n'));
    text.pop_back();
    return text;
}

TEST(ControlToken, IsWrittenForThisUserAlone)
{
    const test::TemporaryFolder base;
    const ControlToken token = ControlToken::random();
    token.writeTo(base / "Veranox");
    EXPECT_EQ(fs::status(base / "Veranox").permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(base / "Veranox/control.token").permissions(), fs::perms(0600));
    const std::string text = withoutLineEnd(base.read("Veranox/control.token"));
    EXPECT_TRUE(std::regex_match(text, std::regex("[0-9a-f]{64}"))) << text;
    EXPECT_TRUE(token.matches(text));
}

TEST(ControlToken, IsAnotherOneEachTime)
{
    const test::TemporaryFolder base;
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        ControlToken::random().writeTo(base.path());
        seen.insert(base.read("control.token"));
    }
    EXPECT_EQ(seen.size(), 100U);
}

TEST(ControlToken, MatchesItselfOnly)
{
    const test::TemporaryFolder base;
    const ControlToken token = ControlToken::random();
    token.writeTo(base.path());
    const std::string text = withoutLineEnd(base.read("control.token"));
    EXPECT_TRUE(token.matches(text));
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string other = text;
        other[i] = other[i] == '0' ? '1' : '0';
        EXPECT_FALSE(token.matches(other));
        EXPECT_FALSE(token.matches(text.substr(0, i)));
    }
    EXPECT_FALSE(token.matches(text + "0"));
    EXPECT_FALSE(token.matches(text + std::string(1, '\0')));
    EXPECT_FALSE(token.matches(text.substr(0, 63) + std::string(1, '\0')));
}

TEST(ControlToken, PlacesThatCannotHoldItAreNamed)
{
    const test::TemporaryFolder base;
    const ControlToken token = ControlToken::random();
    fs::create_directories(base / "taken/control.token");
    base.write("file", "x");
    fs::create_directory_symlink(base / "taken", base / "link");
    for (const std::string place : {"taken", "file", "link"}) {
        try {
            token.writeTo(base / place);
            ADD_FAILURE() << place;
        } catch (const ServiceProblem &problem) {
            EXPECT_THAT(problem.what(), HasSubstr("The control token " + (base / place).string() + "/control.token"));
            EXPECT_THAT(problem.what(), HasSubstr("could not be written"));
        }
    }
    EXPECT_TRUE(fs::is_directory(base / "taken/control.token")) << "what was there is untouched";
}

} // namespace

} // namespace veranox
