#include "API/Records/VeranoxTunnel.h"
#include "Tests/API/ClientAndService.h"
#include <gtest/gtest.h>
#include <map>

using namespace Qt::StringLiterals;
using veranox::test::ServiceProcess;
using veranox::test::TemporaryFolder;

TEST_F(ClientAndService, theTokenLiesWhereTheClientLooksForIt)
{
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", QByteArray::fromStdString(home.path().string()));
    const QString place = defaultControlTokenPath();
    qputenv("HOME", before);
    EXPECT_EQ(place, QString::fromStdString(home / ".local/share/Veranox/control.token"));
    EXPECT_TRUE(readControlToken(place));
}

TEST_F(ClientAndService, aNewTokenIsFoundByItself)
{
    const std::string place = ".local/share/Veranox/control.token";
    const std::string current = home.read(place);
    home.write(place, "stale");
    EXPECT_FALSE(outcome(client->stopTunnel(u"db"_s))); // the client keeps the stale token from here on
    EXPECT_FALSE(value(client->fetchTunnels()).value(0).disabled);
    home.write(place, current);
    EXPECT_TRUE(value(client->stopTunnel(u"db"_s)).value(0).disabled);
    home.write(place, "stale again");
    EXPECT_FALSE(value(client->startTunnel(u"db"_s)).value(0).disabled) << "the good one is kept";
}

// The service in an environment, and where the client looks for its token in the same one.
class TokenPlace : public testing::TestWithParam<std::optional<std::string>> {
protected:
    TokenPlace()
    {
        qputenv("HOME", home.path().c_str());
        if (GetParam())
            qputenv("XDG_DATA_HOME", place().c_str());
        else
            qunsetenv("XDG_DATA_HOME");
    }
    ~TokenPlace() override
    {
        restore("HOME", homeBefore);
        restore("XDG_DATA_HOME", dataBefore);
    }

    // What the parameter stands for: "HOME/…" is a folder in the home folder.
    std::string place() const
    {
        const std::string &named = *GetParam();
        return named.starts_with("HOME/") ? (home / named.substr(5)).string() : named;
    }
    static std::optional<QByteArray> variable(const char *name)
    {
        return qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt;
    }
    static void restore(const char *name, const std::optional<QByteArray> &value)
    {
        if (value)
            qputenv(name, *value);
        else
            qunsetenv(name);
    }

    const std::optional<QByteArray> homeBefore = variable("HOME");
    const std::optional<QByteArray> dataBefore = variable("XDG_DATA_HOME");
    TemporaryFolder home;
};

TEST_P(TokenPlace, IsTheSameForClientAndService)
{
    std::map<std::string, std::string> variables;
    if (GetParam())
        variables["XDG_DATA_HOME"] = place();
    ServiceProcess service(home.path(), {"gui", "serve", "--listen", "127.0.0.1:0"}, variables);
    const QUrl url(u"http://127.0.0.1:"_s + QString::number(service.awaitPort()));
    RealWorld world;
    VeranoxAPIClient client(world.queue, url, VeranoxDiagnosticSession::make(), {});
    const auto stopped = std::make_shared<std::optional<VeranoxAPIResult<>>>();
    jobs::JobScope scope(world.queue);
    const auto job = scope.start(keepValue(stopped, client.shutdown()));
    ASSERT_TRUE(world.runUntil([&] { return job.finished(); }));
    EXPECT_TRUE(stopped->value()) << "the token that the client found was not the service's";
}

INSTANTIATE_TEST_SUITE_P(Environments, TokenPlace,
    testing::Values(
        std::nullopt, "HOME/data", "HOME/da ta/", "HOME/a/../b", "", "data", "./data", "../data", "~/data"));
