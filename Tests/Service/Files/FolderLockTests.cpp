#include "Service/Files/FolderLock.h"
#include "Service/Text/ServiceProblem.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>
#include <optional>
#include <unistd.h>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string failureOf(const fs::path &folder)
{
    try {
        const FolderLock lock(folder, "config.json", "XDG_CONFIG_HOME");
    } catch (const ServiceProblem &problem) {
        return problem.what();
    }
    return "";
}

TEST(FolderLock, LetsNobodyElseIn)
{
    const test::TemporaryFolder base;
    const fs::path place = base / "deep/folder";
    std::optional<FolderLock> first(std::in_place, place, "config.json", "XDG_CONFIG_HOME");
    EXPECT_EQ(failureOf(place),
        "The folder " + place.string() + " for config.json is in use by service_tests (process "
            + std::to_string(::getpid()) + "); end that program, or set XDG_CONFIG_HOME to another place.");
    EXPECT_EQ(failureOf(base.path()), "") << "another folder";
    first.reset();
    EXPECT_EQ(failureOf(place), "");
}

TEST(FolderLock, AFileThatIsOnlyLeftOverIsNoLock)
{
    const test::TemporaryFolder base;
    base.write("service.lock", "4711 veranox\n");
    EXPECT_EQ(failureOf(base.path()), "");
}

TEST(FolderLock, AHolderThatDoesNotTellIsStillOne)
{
    const test::TemporaryFolder base;
    const FolderLock first(base.path(), "config.json", "XDG_CONFIG_HOME");
    for (const std::string text : {"", "x", "12", "12\n", "99999999999999999999 x"}) {
        base.write("service.lock", text);
        EXPECT_THAT(failureOf(base.path()), HasSubstr(" is in use by ")) << text;
    }
}

TEST(FolderLock, PlacesThatCannotBeLockedAreNamed)
{
    const test::TemporaryFolder base;
    base.write("file", "x");
    fs::create_directories(base / "taken/service.lock");
    fs::create_directory(base / "linked");
    fs::create_symlink(base / "file", base / "linked/service.lock");
    for (const std::string place : {"file", "taken", "linked"}) {
        const std::string said = failureOf(base / place);
        EXPECT_THAT(said, StartsWith("The folder " + (base / place).string() + " for config.json cannot be used ("));
        EXPECT_THAT(said, HasSubstr("or set XDG_CONFIG_HOME to another place."));
    }
    EXPECT_EQ(base.read("file"), "x");
}

} // namespace

} // namespace veranox
