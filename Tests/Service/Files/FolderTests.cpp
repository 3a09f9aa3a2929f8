#include "Service/Files/Folder.h"
#include "Service/Files/Programs.h"
#include "Service/Files/UserFolders.h"
#include "Service/Text/ServiceProblem.h"
#include "Tests/Service/Support/FileSizeLimit.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

unsigned modeOf(const fs::path &path)
{
    return static_cast<unsigned>(fs::status(path).permissions());
}

std::string failureOf(const std::function<void()> &run)
{
    try {
        run();
    } catch (const std::system_error &failure) {
        return failure.what();
    }
    return "";
}

TEST(Folder, IsMadePrivateWithItsParents)
{
    const TemporaryFolder base;
    const Folder folder = Folder::openOrMake(base / "a/b", false);
    EXPECT_EQ(modeOf(base / "a"), 0700U);
    EXPECT_EQ(modeOf(base / "a/b"), 0700U);
    EXPECT_EQ(folder.path(), base / "a/b");
}

TEST(Folder, PrivateFolderIsClosedToOthersOnlyWhereAsked)
{
    const TemporaryFolder base;
    fs::create_directory(base / "open");
    fs::permissions(base / "open", fs::perms(0755));
    Folder::openOrMake(base / "open", false);
    EXPECT_EQ(modeOf(base / "open"), 0755U);
    Folder::openOrMake(base / "open", true);
    EXPECT_EQ(modeOf(base / "open"), 0700U);
}

TEST(Folder, ALinkInItsPlaceIsRefused)
{
    const TemporaryFolder base;
    fs::create_directory(base / "elsewhere");
    fs::create_directory_symlink(base / "elsewhere", base / "link");
    EXPECT_THAT(failureOf([&] { Folder::openOrMake(base / "link", true); }), HasSubstr("symbolic link"));
}

TEST(Folder, AFileInItsPlaceIsRefused)
{
    const TemporaryFolder base;
    base.write("file", "x");
    EXPECT_NE(failureOf([&] { Folder::openOrMake(base / "file", true); }), "");
    EXPECT_NE(failureOf([&] { Folder::openOrMake(base / "file/below", true); }), "");
}

TEST(Folder, ReplacedFileHasContentModeAndNoLeftovers)
{
    const TemporaryFolder base;
    const Folder folder = Folder::openOrMake(base.path(), false);
    folder.replace("f", "one", 0600);
    folder.replace("f", "two", 0600);
    EXPECT_EQ(base.read("f"), "two");
    EXPECT_EQ(modeOf(base / "f"), 0600U);
    EXPECT_THAT(base.names(), ElementsAre("f"));
}

TEST(Folder, ReplacingALinkLeavesItsTargetAlone)
{
    const TemporaryFolder base;
    base.write("target", "precious");
    fs::create_symlink(base / "target", base / "f");
    Folder::openOrMake(base.path(), false).replace("f", "new", 0600);
    EXPECT_EQ(base.read("target"), "precious");
    EXPECT_FALSE(fs::is_symlink(base / "f"));
    EXPECT_EQ(base.read("f"), "new");
}

TEST(Folder, FullDiskLeavesTheOldFileWhole)
{
    const TemporaryFolder base;
    const Folder folder = Folder::openOrMake(base.path(), false);
    folder.replace("f", "old", 0600);
    for (const rlim_t room : {0U, 1U, 4096U, 9999U}) {
        const test::FileSizeLimit full(room);
        EXPECT_THAT(failureOf([&] { folder.replace("f", std::string(10000, 'x'), 0600); }),
            HasSubstr("writing the new content"));
    }
    EXPECT_EQ(base.read("f"), "old");
    EXPECT_THAT(base.names(), ElementsAre("f"));
}

TEST(Folder, FolderUnderTheNameOfAFileIsRefusedAndKept)
{
    const TemporaryFolder base;
    fs::create_directory(base / "f");
    const Folder folder = Folder::openOrMake(base.path(), false);
    EXPECT_THAT(failureOf([&] { folder.replace("f", "x", 0600); }), HasSubstr("putting the new file in its place"));
    EXPECT_NE(failureOf([&] { folder.read("f", 10); }), "");
    EXPECT_THAT(base.names(), ElementsAre("f"));
}

TEST(Folder, ReadsUpToTheLimit)
{
    const TemporaryFolder base;
    base.write("f", "12345");
    const Folder folder = Folder::openOrMake(base.path(), false);
    EXPECT_EQ(folder.read("f", 5), "12345");
    EXPECT_THAT(failureOf([&] { folder.read("f", 4); }), HasSubstr("more than 4 bytes"));
    EXPECT_EQ(folder.read("none", 5), std::nullopt);
}

TEST(Folder, NeverWaitsForAPipe)
{
    const TemporaryFolder base;
    ASSERT_EQ(::mkfifo((base / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(
        failureOf([&] { Folder::openOrMake(base.path(), false).read("pipe", 5); }), HasSubstr("no regular file"));
    EXPECT_THAT(failureOf([&] { readWholeFile("/dev/zero", 5); }), HasSubstr("no regular file"));
}

TEST(Folder, RenameRefusesATakenName)
{
    const TemporaryFolder base;
    base.write("a", "1");
    base.write("b", "2");
    const Folder folder = Folder::openOrMake(base.path(), false);
    EXPECT_NE(failureOf([&] { folder.rename("a", "b"); }), "");
    EXPECT_EQ(base.read("b"), "2");
    folder.rename("a", "c");
    EXPECT_THAT(base.names(), ElementsAre("b", "c"));
}

Environment environmentOf(std::map<std::string, std::string> variables)
{
    return [variables = std::move(variables)](const std::string &name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

TEST(UserFolders, FollowTheEnvironment)
{
    const UserFolders usual = userFolders(environmentOf({{"HOME", "/home/me"}}));
    EXPECT_EQ(usual.applicationSupport, "/home/me/.local/share/Veranox");
    EXPECT_EQ(usual.configuration, "/home/me/.config/veranox");
    const UserFolders moved = userFolders(environmentOf({{"XDG_DATA_HOME", "/d"}, {"XDG_CONFIG_HOME", "/c"}}));
    EXPECT_EQ(moved.applicationSupport, "/d/Veranox");
    EXPECT_EQ(moved.configuration, "/c/veranox");
}

TEST(UserFolders, RelativePlacesAreIgnored)
{
    EXPECT_EQ(userFolders(environmentOf({{"HOME", "/h"}, {"XDG_DATA_HOME", "d"}})).applicationSupport,
        "/h/.local/share/Veranox");
    EXPECT_THROW(userFolders(environmentOf({{"HOME", "h"}})), ServiceProblem);
    EXPECT_THROW(userFolders(environmentOf({})), ServiceProblem);
}

TEST(Folder, TakesAwayOnlyWhatAKilledReplaceLeftBehindLongAgo)
{
    const TemporaryFolder base;
    const std::vector<std::string> old{".a.1.new", ".a.x.new", ".b.1.new", "a", ".a", ".a.1", "a.1.new"};
    for (const std::string &name : old) {
        base.write(name, "text");
        fs::last_write_time(base / name, fs::file_time_type::clock::now() - std::chrono::minutes(2));
    }
    base.write(".a.2.new", "of a process that still works on it");
    fs::create_directory(base / ".a.folder.new");
    fs::last_write_time(base / ".a.folder.new", fs::file_time_type::clock::now() - std::chrono::minutes(2));
    Folder::openOrMake(base.path(), false).removeAbandoned("a");
    EXPECT_THAT(base.names(), ElementsAre(".a", ".a.1", ".a.2.new", ".a.folder.new", ".b.1.new", "a", "a.1.new"));
}

TEST(Folder, AppendsUpToTheLimit)
{
    const TemporaryFolder base;
    const Folder folder = Folder::openOrMake(base.path(), false);
    folder.append("a", "one", 6, 0600);
    folder.append("a", "two", 6, 0600);
    EXPECT_EQ(base.read("a"), "onetwo");
    EXPECT_THROW(folder.append("a", "3", 6, 0600), std::system_error);
    EXPECT_THROW(folder.append("b", "1234567", 6, 0600), std::system_error);
    EXPECT_EQ(base.read("a"), "onetwo");
    fs::create_directory(base / "folder");
    EXPECT_THROW(folder.append("folder", "x", 6, 0600), std::system_error);
}

TEST(Programs, AreFoundOnThePath)
{
    const TemporaryFolder base;
    base.write("tool", "#!/bin/sh\n");
    base.write("plain", "text");
    fs::permissions(base / "tool", fs::perms(0700));
    fs::create_directory(base / "folder");
    const Environment environment = environmentOf({{"PATH", "/nonexistent::" + base.path().string()}});
    EXPECT_EQ(findProgram("tool", environment), base / "tool");
    EXPECT_EQ(findProgram((base / "tool").string(), environmentOf({})), base / "tool");
    for (const std::string command : {"plain", "folder", "none", "", "./tool", "../tool"})
        EXPECT_FALSE(findProgram(command, environment)) << command;
    const std::string fromHere = fs::relative(base.path()).string();
    ASSERT_TRUE(fs::exists(fromHere + "/tool"));
    EXPECT_FALSE(findProgram("tool", environmentOf({{"PATH", fromHere}}))) << "a folder that depends on where we stand";
}

} // namespace

} // namespace veranox
