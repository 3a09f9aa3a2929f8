#include "Service/Files/Folder.h"
#include "Service/Files/Programs.h"
#include "Service/Files/UserFolders.h"
#include "Service/Text/ServiceProblem.h"
#include "Tests/Service/Support/FileSizeLimit.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

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

TEST(Folder, TakesAwayOnlyWhatAKilledReplaceLeftBehind)
{
    const TemporaryFolder base;
    for (const std::string name : {".a.1.new", ".a.23.new", ".a..new", ".a.x.new", ".a.1x.new", ".b.1.new", "a", ".a",
             ".a.1", "a.1.new", ".a.new"})
        base.write(name, "text");
    fs::create_directory(base / ".a.4.new");
    Folder::openOrMake(base.path(), false).removeAbandoned("a");
    EXPECT_THAT(base.names(),
        ElementsAre(
            ".a", ".a..new", ".a.1", ".a.1x.new", ".a.4.new", ".a.new", ".a.x.new", ".b.1.new", "a", "a.1.new"));
}

TEST(Folder, InWhichEverybodyMayWriteIsRefused)
{
    const TemporaryFolder base;
    fs::create_directory(base / "open");
    for (const unsigned mode : {0702U, 0777U, 01777U})
        for (const bool isPrivate : {false, true}) {
            fs::permissions(base / "open", fs::perms(mode));
            EXPECT_THAT(failureOf([&] { Folder::openOrMake(base / "open", isPrivate); }),
                HasSubstr("using the folder, in which everybody may write"));
            EXPECT_EQ(modeOf(base / "open"), mode);
        }
    fs::permissions(base / "open", fs::perms(0775));
    EXPECT_EQ(failureOf([&] { Folder::openOrMake(base / "open", false); }), "");
}

TEST(Folder, OfAnotherUserIsRefused)
{
    const TemporaryFolder base;
    if (::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        fs::create_directory(base / "foreign");
        ASSERT_EQ(::chown((base / "foreign").c_str(), nobody, nobody), 0);
    }
    EXPECT_THAT(failureOf([&] { Folder::openOrMake(::geteuid() == 0 ? base / "foreign" : "/", false); }),
        HasSubstr("using the folder, which belongs to another user"));
}

TEST(Folder, AppendsLinesUpToTheLimit)
{
    const TemporaryFolder base;
    const Folder folder = Folder::openOrMake(base.path(), false);
    folder.appendLine("a", "one", 8, 0600);
    folder.appendLine("a", "two", 8, 0600);
    EXPECT_EQ(base.read("a"), "one\ntwo\n");
    EXPECT_THROW(folder.appendLine("a", "", 8, 0600), std::system_error);
    EXPECT_THROW(folder.appendLine("b", "12345678", 8, 0600), std::system_error);
    EXPECT_EQ(base.read("a"), "one\ntwo\n");
    fs::create_directory(base / "folder");
    EXPECT_THROW(folder.appendLine("folder", "x", 8, 0600), std::system_error);
}

TEST(Folder, ALineBehindATornOneBeginsAnew)
{
    const TemporaryFolder base;
    base.write("a", "one\nto");
    const Folder folder = Folder::openOrMake(base.path(), false);
    EXPECT_THROW(folder.appendLine("a", "three", 12, 0600), std::system_error) << "the line end counts";
    folder.appendLine("a", "three", 13, 0600);
    EXPECT_EQ(base.read("a"), "one\nto\nthree\n");
    base.write("a", std::string("one\0", 4));
    folder.appendLine("a", "two", 100, 0600);
    EXPECT_EQ(base.read("a"), std::string("one\0\ntwo\n", 9));
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
