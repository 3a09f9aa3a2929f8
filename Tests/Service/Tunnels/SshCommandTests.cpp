#include "Service/Tunnels/SshCommand.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>
#include <map>

namespace veranox {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

class SshCommandTest : public ::testing::Test {
protected:
    SshCommandTest()
    {
        folder.write("ssh", "#!/bin/sh\n");
        std::filesystem::permissions(folder / "ssh", std::filesystem::perms::owner_all);
        variables = {
            {"PATH", folder.path().string()}, {"HOME", "/home/u"}, {"SSH_AUTH_SOCK", "/run/agent"}, {"SECRET", "x"}};
        tunnel.mode = "ssh";
        tunnel.target = "db.internal:5432";
        tunnel.ssh = TunnelSSHSettings{.bastion = "bastion.net", .user = "deploy", .auth = "agent", .identityFile = ""};
    }

    SshCommand command() const
    {
        const SshPlaces places{"/opt/a 100%/veranox", "/home/u/Application Support/known_hosts",
            [this](const std::string &name) -> std::optional<std::string> {
                const auto found = variables.find(name);
                return found == variables.end() ? std::nullopt : std::optional(found->second);
            }};
        return sshCommand(tunnel, places, {"/run/v/dial", "/run/v/ask", "/run/v/forward"});
    }

    test::TemporaryFolder folder;
    std::map<std::string, std::string> variables;
    TunnelSettings tunnel;
};

TEST_F(SshCommandTest, LeadsThroughTheNodeToTheTarget)
{
    const std::vector<std::string> words = command().arguments;
    EXPECT_EQ(words.front(), (folder / "ssh").string());
    EXPECT_EQ(words.back(), "bastion.net");
    EXPECT_THAT(words, Contains("/run/v/forward:db.internal:5432"));
    EXPECT_THAT(words, Contains("22"));
    EXPECT_THAT(words, Contains("ExitOnForwardFailure=yes"));
    EXPECT_THAT(words, Contains("BatchMode=yes"));
    EXPECT_THAT(words, Contains("StrictHostKeyChecking=accept-new"));
    EXPECT_THAT(words, Contains("UserKnownHostsFile=\"/home/u/Application Support/known_hosts\""));
    EXPECT_THAT(words, Contains("ProxyCommand='/opt/a 100%%/veranox' ssh-connect '/run/v/dial'"));
}

TEST_F(SshCommandTest, AddressesAndPorts)
{
    tunnel.target = "[fd00::1]:80";
    tunnel.ssh->bastion = "bastion.net:2222";
    EXPECT_THAT(command().arguments, Contains("/run/v/forward:[fd00::1]:80"));
    EXPECT_THAT(command().arguments, Contains("2222"));
}

TEST_F(SshCommandTest, EnvironmentHoldsOnlyWhatIsNeeded)
{
    EXPECT_THAT(command().environment, Contains("SSH_AUTH_SOCK=/run/agent"));
    EXPECT_THAT(command().environment, Not(Contains(HasSubstr("SECRET"))));
    EXPECT_THAT(command().environment, Not(Contains(HasSubstr("ASKPASS"))));
    tunnel.ssh->auth = "password";
    EXPECT_THAT(command().environment, Not(Contains(HasSubstr("SSH_AUTH_SOCK"))));
    EXPECT_THAT(command().environment, Contains("SSH_ASKPASS_REQUIRE=force"));
    EXPECT_THAT(command().environment, Contains("VERANOX_ASKPASS_SOCKET=/run/v/ask"));
    EXPECT_THAT(command().arguments, Contains("BatchMode=no"));
}

TEST_F(SshCommandTest, KeyIsUsedAlone)
{
    tunnel.ssh->auth = "key";
    tunnel.ssh->identityFile = "/home/u/50% off key";
    EXPECT_THAT(command().arguments, Contains("IdentityFile=\"/home/u/50%% off key\""));
    EXPECT_THAT(command().arguments, Contains("IdentitiesOnly=yes"));
    EXPECT_THAT(command().environment, Not(Contains(HasSubstr("SSH_AUTH_SOCK"))));
}

TEST_F(SshCommandTest, SettingsThatCouldBeWordsOfACommandAreRefused)
{
    for (const std::string bad : {"", "-oProxyCommand=x", "a b", "a\"b", "a\nb", "a'b", "a\\b", "a\x7f"}) {
        tunnel.ssh->user = bad;
        EXPECT_THROW(command(), std::invalid_argument) << bad;
        tunnel.ssh->user = "deploy";
        tunnel.ssh->bastion = bad;
        EXPECT_THROW(command(), std::invalid_argument) << bad;
        tunnel.ssh->bastion = "bastion.net";
    }
    tunnel.ssh->auth = "key";
    tunnel.ssh->identityFile = "/home/u/a\"b";
    EXPECT_THROW(command(), std::invalid_argument);
}

TEST_F(SshCommandTest, WithoutSshItSaysSo)
{
    variables["PATH"] = "/nonexistent";
    try {
        command();
        FAIL();
    } catch (const std::invalid_argument &problem) {
        EXPECT_STREQ(problem.what(), "The program ssh was not found; install the OpenSSH client.");
    }
}

TEST(SshComplaint, IsTheLastLineThatTells)
{
    EXPECT_EQ(sshComplaint(""), "");
    EXPECT_EQ(sshComplaint("Warning: Permanently added 'b' to the list of known hosts.\r\n"), "");
    EXPECT_EQ(
        sshComplaint("first\nu@b: Permission denied (publickey).\r\n\n  \n"), "u@b: Permission denied (publickey).");
    EXPECT_EQ(sshComplaint("u@b: Permission denied.\nConnection closed by b\n"), "u@b: Permission denied.");
    EXPECT_EQ(sshComplaint("a\x1B[31mred"), "a [31mred") << "nothing that moves a cursor";
    EXPECT_THAT(sshComplaint("@@@@@@@@\n@ WARNING: REMOTE HOST IDENTIFICATION HAS CHANGED! @\nHost key failed.\n"),
        ::testing::StartsWith("REMOTE HOST IDENTIFICATION HAS CHANGED"));
    EXPECT_LE(sshComplaint(std::string(100'000, 'x')).size(), 300U);
}

} // namespace

} // namespace veranox
