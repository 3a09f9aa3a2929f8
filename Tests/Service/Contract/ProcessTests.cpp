#include "Tests/Service/Contract/ServiceContract.h"
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using namespace test::contract;
using test::RawClient;
using test::ServiceProcess;
using ::testing::HasSubstr;

TEST_F(ServiceContract, SignalsEndItInOrder)
{
    for (const int number : {SIGTERM, SIGINT}) {
        ServiceProcess service(home.path(), plain);
        RawClient idle(service.awaitPort());
        service.signal(number);
        EXPECT_EQ(service.awaitEnd(), 0) << number;
        EXPECT_TRUE(idle.isClosedByServer());
        EXPECT_THAT(service.output(), HasSubstr(number == SIGTERM ? "reason=SIGTERM" : "reason=SIGINT"));
        EXPECT_THAT(service.output(), HasSubstr("event_code=service_stopped"));
    }
}

TEST_F(ServiceContract, LinesCarryTheSession)
{
    ServiceProcess service(home.path(), plain, {{"VERANOX_SESSION_ID", "0f0e-session"}});
    service.awaitPort();
    service.signal(SIGTERM);
    service.awaitEnd();
    EXPECT_THAT(service.output(), HasSubstr("component=local_service session_id=0f0e-session "));
    ServiceProcess forged(home.path(), plain, {{"VERANOX_SESSION_ID", "x level=fatal"}});
    forged.awaitPort();
    forged.signal(SIGTERM);
    forged.awaitEnd();
    EXPECT_THAT(forged.output(), ::testing::Not(HasSubstr("fatal")));
}

TEST_F(ServiceContract, TakenAddressNamesItsHolderAndTouchesNothing)
{
    ServiceProcess first(home.path(), plain);
    const std::string address = "127.0.0.1:" + std::to_string(first.awaitPort());
    const std::string token = tokenHeader();
    ServiceProcess second(home.path(), {"gui", "serve", "--listen", address});
    EXPECT_EQ(second.awaitEnd(), 2);
    EXPECT_EQ(second.errorOutput(),
        "veranox: The address " + address + " is taken by veranox (process " + std::to_string(first.process())
            + "); end that program or choose another address with --listen.\n");
    EXPECT_EQ(tokenHeader(), token) << "the running service keeps its token";
}

TEST_F(ServiceContract, DamagedConfigurationIsSetAsideAndTheNextStartBeginsEmpty)
{
    fs::create_directories(home / ".config/veranox");
    home.write(".config/veranox/config.json", "{\"Version\": 1,\n");
    ServiceProcess first(home.path(), plain);
    EXPECT_EQ(first.awaitEnd(), 2);
    EXPECT_THAT(first.errorOutput(), HasSubstr("is not valid: at line 2, column 1: "));
    EXPECT_THAT(first.errorOutput(), HasSubstr("config.json.damaged-"));
    ServiceProcess second(home.path(), plain);
    EXPECT_TRUE(get(second.awaitPort(), "/api/profiles").as_array().empty());
}

TEST_F(ServiceContract, WrongInputEndsWithOneLineAndStatus2)
{
    home.write("bad.json", "{\n  \"version\": one\n}");
    home.write("file", "x");
    fs::create_directories(home / "taken/Veranox/control.token");
    fs::create_directories(home / "linked");
    fs::create_directory_symlink(home / "taken/Veranox", home / "linked/Veranox");
    const std::string listen = "--listen";
    struct Case {
        Arguments arguments;
        std::map<std::string, std::string> variables;
        std::string says;
    };
    const Case table[] = {
        {{}, {}, "--help"},
        {{"frob"}, {}, "--help"},
        {{"gui"}, {}, "--help"},
        {{"gui", "serve", "--frob"}, {}, "--frob"},
        {{"gui", "serve", "a\nb"}, {}, "a b"},
        {{"gui", "serve", listen}, {}, listen},
        {{"gui", "serve", listen, "0.0.0.0:43200"}, {}, "must be bound to loopback"},
        {{"gui", "serve", listen, "192.168.0.1:1"}, {}, "must be bound to loopback"},
        {{"gui", "serve", listen, "127.0.0.1:99999"}, {}, "must end in a port from 0 to 65535"},
        {{"gui", "serve", listen, "here"}, {}, "must be HOST:PORT"},
        {{"gui", "serve", listen, "127.0.0.1:0", "--log-level", "loud"}, {}, "--log-level"},
        {{"gui", "serve", listen, "127.0.0.1:0", "--lab", (home / "none.json").string()}, {}, "none.json"},
        {{"gui", "serve", listen, "127.0.0.1:0", "--lab", (home / "bad.json").string()}, {}, "line 2, column 14"},
        {plain, {{"VERANOX_LAB", home.path().string()}}, "no regular file"},
        {plain, {{"XDG_DATA_HOME", (home / "taken").string()}}, "control.token"},
        {plain, {{"XDG_DATA_HOME", (home / "linked").string()}}, "symbolic link"},
        {plain, {{"XDG_DATA_HOME", (home / "file").string()}}, "control.token"},
        {plain, {{"XDG_CONFIG_HOME", (home / "file").string()}}, "XDG_CONFIG_HOME"},
        {plain, {{"HOME", ""}}, "HOME"},
    };
    for (const Case &wrong : table) {
        ServiceProcess service(home.path(), wrong.arguments, wrong.variables);
        EXPECT_EQ(service.awaitEnd(), 2) << wrong.says;
        const std::string &said = service.errorOutput();
        EXPECT_THAT(said, HasSubstr(wrong.says));
        EXPECT_TRUE(said.starts_with("veranox: ")) << said;
        EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
        EXPECT_TRUE(said.ends_with(".\n")) << said;
        EXPECT_EQ(service.output(), "") << wrong.says;
    }
}

TEST_F(ServiceContract, VersionAndHelpGoToStandardOutput)
{
    ServiceProcess version(home.path(), {"--version"});
    EXPECT_EQ(version.awaitEnd(), 0);
    EXPECT_THAT(version.output(), ::testing::MatchesRegex("veranox [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    ServiceProcess help(home.path(), {"gui", "serve", "--help"});
    EXPECT_EQ(help.awaitEnd(), 0);
    EXPECT_THAT(help.output(), HasSubstr("--listen HOST:PORT"));
    EXPECT_EQ(help.errorOutput(), "");
}

} // namespace

} // namespace veranox
