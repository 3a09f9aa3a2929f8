// Every operation of the control API: what it sends, what it makes of the answer, and what it does to the kept
// configuration.
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfileAction.h"
#include "API/Records/VeranoxTunnel.h"
#include "Tests/API/ApiClientTest.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray document =
    R"({"Version":1,"Router":{"HTTPProxy":"127.0.0.1:43100","SOCKS5Proxy":"127.0.0.1:43101",)"
    R"("PACListen":"127.0.0.1:43180","ProfileHTTPProxyBase":43110,"ProfileSOCKS5Base":43111,)"
    R"("ProfileUDPPortBase":43400,"ProfileHostnameBase":"veranox","TunnelListenBase":43300},)"
    R"("Tailscale":{"TailscaleBin":"tailscale","TailscaledBin":"tailscaled"},)"
    R"("Paths":{"AppSupportDir":"~/Library/Application Support/Veranox","ConfigDir":"~/.config/veranox"},)"
    R"("Profiles":{},"Security":{"RequireLoopbackListeners":true,"AllowCrossProfileFallback":false,)"
    R"("AllowIPLiterals":false,"AllowUnknownTSNet":false}})";
const QByteArray tunnelList = R"([{"Name":"db"}])";
const QByteArray publicationList = R"([{"Name":"wiki"}])";
const QByteArray refusal = R"({"error":"no"})";

const VeranoxEditableTunnel native{.displayName = u"Database"_s,
    .profile = u"acme"_s,
    .mode = u"native"_s,
    .listen = {},
    .target = u"db:5432"_s,
    .ssh = {},
    .disabled = false};
const VeranoxEditablePublication wiki{.displayName = u"Wiki"_s,
    .profile = u"acme"_s,
    .target = u"127.0.0.1:80"_s,
    .reach = u"tailnet"_s,
    .port = 443,
    .tls = true,
    .disabled = false};

enum class Invalidates { nothing, onSuccess, always };

struct Operation {
    const char *name;
    QByteArray requestLine;
    QByteArray body; // empty: none
    QByteArray answer; // a good one
    Invalidates invalidates;
    std::function<VeranoxAPICall<>(VeranoxAPIClient &)> call;
};

template <class T> VeranoxAPICall<> dropping(VeranoxAPICall<T> call)
{
    const auto result = co_await std::move(call);
    if (!result)
        co_return std::unexpected(result.error());
    co_return VeranoxAPIResult<>();
}

template <class T, class... Parameters, class... Arguments>
auto calling(VeranoxAPICall<T> (VeranoxAPIClient::*operation)(Parameters...), Arguments... arguments)
{
    return [=](VeranoxAPIClient &client) { return dropping((client.*operation)(arguments...)); };
}

const QByteArray savedTunnel =
    R"({"DisplayName":"Database","Profile":"acme","Mode":"native","Listen":"","Target":"db:5432","Disabled":false})";
const QByteArray savedPublication = R"({"DisplayName":"Wiki","Profile":"acme","Target":"127.0.0.1:80",)"
                                    R"("Reach":"tailnet","Port":443,"TLS":true,"Disabled":false})";

using Client = VeranoxAPIClient;
using None = std::optional<QString>;

const std::vector<Operation> writes = {
    {"saveConfig", "POST /api/config?force=true", document, R"({"status":"saved","path":"/c"})", Invalidates::onSuccess,
        calling(&Client::saveConfig, VeranoxEditableConfig::emptyForFirstProfile())},
    {"login", "POST /api/profiles/acme/login", "", "{}", Invalidates::nothing, calling(&Client::login, u"acme"_s)},
    {"logout", "POST /api/profiles/acme/logout", "", "{}", Invalidates::nothing, calling(&Client::logout, u"acme"_s)},
    {"shutdown", "POST /api/shutdown", "", R"({"status":"stopping"})", Invalidates::nothing,
        calling(&Client::shutdown)},
    {"saveNewTunnel", "POST /api/tunnels", R"({"Name":"db","Tunnel":)" + savedTunnel + '}', tunnelList,
        Invalidates::always, calling(&Client::saveTunnel, u"db"_s, None(), native)},
    {"renameTunnel", "POST /api/tunnels", R"({"Name":"db","OriginalName":"old","Tunnel":)" + savedTunnel + '}',
        tunnelList, Invalidates::always, calling(&Client::saveTunnel, u"db"_s, None(u"old"_s), native)},
    {"deleteTunnel", "DELETE /api/tunnels/db", "", tunnelList, Invalidates::always,
        calling(&Client::deleteTunnel, u"db"_s)},
    {"startTunnel", "POST /api/tunnels/db/start", "", tunnelList, Invalidates::always,
        calling(&Client::startTunnel, u"db"_s)},
    {"stopTunnel", "POST /api/tunnels/db/stop", "", tunnelList, Invalidates::always,
        calling(&Client::stopTunnel, u"db"_s)},
    {"restartTunnel", "POST /api/tunnels/db/restart", "", tunnelList, Invalidates::nothing,
        calling(&Client::restartTunnel, u"db"_s)},
    {"setTunnelSecret", "POST /api/tunnels/db/secret", R"({"Password":"pa\"ss"})", tunnelList, Invalidates::nothing,
        calling(&Client::setTunnelSecret, u"db"_s, u"pa\"ss"_s)},
    {"saveNewPublication", "POST /api/publications", R"({"Name":"wiki","Publication":)" + savedPublication + '}',
        publicationList, Invalidates::always, calling(&Client::savePublication, u"wiki"_s, None(), wiki)},
    {"renamePublication", "POST /api/publications",
        R"({"Name":"wiki","OriginalName":"old","Publication":)" + savedPublication + '}', publicationList,
        Invalidates::always, calling(&Client::savePublication, u"wiki"_s, None(u"old"_s), wiki)},
    {"deletePublication", "DELETE /api/publications/wiki", "", publicationList, Invalidates::always,
        calling(&Client::deletePublication, u"wiki"_s)},
    {"startPublication", "POST /api/publications/wiki/start", "", publicationList, Invalidates::always,
        calling(&Client::startPublication, u"wiki"_s)},
    {"stopPublication", "POST /api/publications/wiki/stop", "", publicationList, Invalidates::always,
        calling(&Client::stopPublication, u"wiki"_s)},
    {"restartPublication", "POST /api/publications/wiki/restart", "", publicationList, Invalidates::nothing,
        calling(&Client::restartPublication, u"wiki"_s)},
    {"submitFeedback", "POST /api/feedback",
        R"({"message":"m","kind":"bug","contact":"","appVersion":"1.2.3","os":"Test 4.5.6"})", "{}",
        Invalidates::nothing, calling(&Client::submitFeedback, u"m"_s, u"bug"_s, QString())},
};

const std::vector<Operation> reads = {
    {"fetchProfiles", "GET /api/profiles", "", "[]", Invalidates::nothing, calling(&Client::fetchProfiles)},
    {"fetchConfig", "GET /api/config", "", document, Invalidates::nothing, calling(&Client::fetchConfig)},
    {"fetchEditableConfig", "GET /api/config", "", document, Invalidates::nothing,
        calling(&Client::fetchEditableConfig)},
    {"fetchEnvironment", "GET /api/environment", "", R"({"TailscaledAvailable":true,"TailscaledBin":""})",
        Invalidates::nothing, calling(&Client::fetchEnvironment)},
    {"fetchTunnels", "GET /api/tunnels", "", tunnelList, Invalidates::nothing, calling(&Client::fetchTunnels)},
    {"fetchPublications", "GET /api/publications", "", publicationList, Invalidates::nothing,
        calling(&Client::fetchPublications)},
    {"diagnose", "GET /api/reports/path?target=wiki.acme.ts.net:443&netcheck=true&ping_count=3", "", "{}",
        Invalidates::nothing, calling(&Client::diagnose, u"wiki.acme.ts.net:443"_s)},
};

void PrintTo(const Operation &operation, std::ostream *out)
{
    *out << operation.requestLine.toStdString();
}

std::string nameOf(const testing::TestParamInfo<Operation> &info)
{
    return info.param.name;
}

} // namespace

class ApiOperation : public ApiClientTest, public testing::WithParamInterface<Operation> {
protected:
    Ending make(const Operation &operation) { return complete(operation.call(client)).ending; }
    bool isWrite() const { return !GetParam().requestLine.startsWith("GET "); }
};

class ApiWriteOperation : public ApiOperation {
protected:
    void fetchConfig()
    {
        server.expect("GET /api/config", reply(200, document));
        complete(client.fetchConfig());
    }
    // Whether the next read of the configuration is answered without asking the service.
    bool configurationIsKept()
    {
        const qsizetype before = server.received().size();
        fetchConfig();
        if (server.received().size() > before)
            return false;
        world.run(std::chrono::seconds(2)); // it is stale by then, and the announced request comes
        complete(client.fetchConfig());
        return true;
    }
    bool isKeptAfterTheAnswer(int status, const QByteArray &answer)
    {
        fetchConfig();
        server.expect(GetParam().requestLine, reply(status, answer));
        make(GetParam());
        return configurationIsKept();
    }
};

TEST_P(ApiOperation, sendsItsRequest)
{
    writeToken("secret");
    server.expect(GetParam().requestLine, reply(200, GetParam().answer));
    EXPECT_EQ(make(GetParam()), Ending::good);
    ASSERT_EQ(server.received().size(), 1);
    const ReceivedRequest request = server.received().at(0);
    EXPECT_EQ(request.body, GetParam().body);
    EXPECT_EQ(request.headers.value("content-type"), GetParam().body.isEmpty() ? "" : "application/json");
    EXPECT_EQ(request.headers.value("x-veranox-token"), isWrite() ? "secret" : "");
}

TEST_P(ApiOperation, triesAgainAfterA403OnlyIfItIsAWrite)
{
    server.expect(GetParam().requestLine, reply(403, refusal));
    if (isWrite())
        server.expect(GetParam().requestLine, reply(200, GetParam().answer));
    EXPECT_EQ(make(GetParam()), isWrite() ? Ending::good : Ending::refused);
    const auto received = server.received();
    ASSERT_EQ(received.size(), isWrite() ? 2 : 1);
    EXPECT_EQ(received.last().headers.value("x-veranox-attempt"), isWrite() ? "2" : "1");
    EXPECT_EQ(received.last().body, GetParam().body);
}

TEST_P(ApiOperation, failsWithWhatTheServiceSays)
{
    server.expect(GetParam().requestLine, reply(409, R"({"error":"tunnel \"x\" already exists"})"));
    const auto outcome = complete(GetParam().call(client));
    EXPECT_EQ(outcome.ending, Ending::refused);
    EXPECT_EQ(outcome.text, u"tunnel \"x\" already exists");
}

TEST_P(ApiOperation, failsOnAGoodAnswerOfAnotherKind)
{
    server.expect(GetParam().requestLine, reply(200, "7"));
    EXPECT_EQ(make(GetParam()), Ending::undecodable);
}

INSTANTIATE_TEST_SUITE_P(write, ApiOperation, testing::ValuesIn(writes), nameOf);
INSTANTIATE_TEST_SUITE_P(read, ApiOperation, testing::ValuesIn(reads), nameOf);

TEST_P(ApiWriteOperation, invalidatesTheConfigurationOnSuccess)
{
    EXPECT_EQ(isKeptAfterTheAnswer(200, GetParam().answer), GetParam().invalidates == Invalidates::nothing);
}

TEST_P(ApiWriteOperation, invalidatesTheConfigurationBeforeItFails)
{
    EXPECT_EQ(isKeptAfterTheAnswer(500, refusal), GetParam().invalidates == Invalidates::nothing);
}

// What is read between the sending of a write and its failure serves on after a failed saveConfig, and after no other.
TEST_P(ApiWriteOperation, invalidatesAgainAfterAFailureByTheTable)
{
    const auto gate = std::make_shared<Gate>();
    server.expect(GetParam().requestLine, replyAfter(gate, 500, refusal));
    const auto outcome = begin(GetParam().call(client));
    ASSERT_TRUE(waitForRequests(1));
    fetchConfig();
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return outcome->ended(); }));
    EXPECT_EQ(configurationIsKept(), GetParam().invalidates != Invalidates::always);
}

INSTANTIATE_TEST_SUITE_P(each, ApiWriteOperation, testing::ValuesIn(writes), nameOf);

using ApiNames = ApiClientTest;

TEST_F(ApiNames, areEncodedIntoThePathAndSent)
{
    server.expect("POST /api/profiles/My%20Net/login", reply(200, "{}"));
    EXPECT_EQ(complete(client.login(u"My Net"_s)).ending, Ending::good);
    server.expect("DELETE /api/tunnels/%C3%BC%3F%23%25", reply(200, "[]"));
    EXPECT_EQ(complete(client.deleteTunnel(u"ü?#%"_s)).ending, Ending::good);
    server.expect("POST /api/publications/a/b/stop", reply(200, "[]"));
    EXPECT_EQ(complete(client.stopPublication(u"a/b"_s)).ending, Ending::good);
}

TEST_F(ApiNames, anAmpersandInATargetSplitsTheQuery)
{
    server.expect("GET /api/reports/path?target=a&b&netcheck=true&ping_count=3", reply(200, "{}"));
    EXPECT_EQ(complete(client.diagnose(u"a&b"_s)).ending, Ending::good);
    server.expect("GET /api/reports/path?target=a%20b%23c&netcheck=true&ping_count=3", reply(200, "{}"));
    EXPECT_EQ(complete(client.diagnose(u"a b#c"_s)).ending, Ending::good);
}

using ApiAnswers = ApiClientTest;

TEST_F(ApiAnswers, areHandedOnAsRecords)
{
    server.expect("POST /api/profiles/a/login", reply(200, R"({"ok":true,"auth_url":"https://h/x"})"));
    EXPECT_EQ(complete(client.login(u"a"_s)).value->authURL(), QUrl(u"https://h/x"_s));
    server.expect("POST /api/tunnels/db/start", reply(200, tunnelList));
    EXPECT_EQ(complete(client.startTunnel(u"db"_s)).value->value(0).name, u"db");
    server.expect("POST /api/publications/wiki/start", reply(200, publicationList));
    EXPECT_EQ(complete(client.startPublication(u"wiki"_s)).value->value(0).name, u"wiki");
    server.expect("GET /api/reports/path?target=t&netcheck=true&ping_count=3", reply(200, R"({"host":"t"})"));
    EXPECT_EQ(complete(client.diagnose(u"t"_s)).value->host, u"t");
    server.expect("POST /api/feedback", reply(200, R"({"url":"https://h/1"})"));
    EXPECT_EQ(complete(client.submitFeedback(u"m"_s, u"k"_s, u"c"_s)).value->url, u"https://h/1"_s);
}

TEST_F(ApiAnswers, aDroppedOneMustBeThereAllTheSame)
{
    server.expect("POST /api/tunnels/db/secret", reply(200, "{}"));
    EXPECT_EQ(complete(client.setTunnelSecret(u"db"_s, u"p"_s)).ending, Ending::undecodable);
    server.expect("POST /api/shutdown", reply(200, "{}"));
    EXPECT_EQ(complete(client.shutdown()).ending, Ending::undecodable);
    server.expect("POST /api/config?force=true", reply(200, R"({"status":"saved"})"));
    EXPECT_EQ(complete(client.saveConfig(VeranoxEditableConfig::emptyForFirstProfile())).ending, Ending::undecodable);
}
