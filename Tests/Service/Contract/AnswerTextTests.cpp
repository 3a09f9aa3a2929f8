#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include <boost/json/parse.hpp>
#include <gmock/gmock.h>
#include <random>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using test::RawClient;
using test::ServiceProcess;
using ::testing::HasSubstr;

const std::string escape = "\xff"; // no UTF-8

/// The body, which must be JSON in UTF-8: this parser takes nothing else.
boost::json::value read(const RawClient::Answer &answer)
{
    boost::json::error_code failure;
    const boost::json::value body = boost::json::parse(answer.body(), failure);
    EXPECT_FALSE(failure) << failure.message() << ": " << answer.body();
    return body;
}

class AnswerText : public ::testing::Test {
protected:
    RawClient::Answer ask(const std::string &method, const std::string &target, const std::string &body = "") const
    {
        RawClient client(port);
        const std::string token = home.read(support + "/Veranox/control.token").substr(0, 64);
        const std::string length = "Content-Length: " + std::to_string(body.size()) + "\r\n";
        return client.exchange(client.request(method, target, "X-Veranox-Token: " + token + "\r\n" + length) + body);
    }

    test::TemporaryFolder home;
    std::string support = ".local/share";
    std::uint16_t port = 0;
};

/// Bytes of all kinds, as they may stand in a request's line: some escaped, some as they are, some UTF-8.
class Bytes {
public:
    std::string next()
    {
        std::string text;
        for (std::size_t count = 1 + m_random() % 8; count > 0; --count)
            text += piece();
        return text;
    }

private:
    std::string piece()
    {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(m_random() % 256);
        switch (m_random() % 4) {
        case 0:
            return {'%', digits[byte / 16], digits[byte % 16]};
        case 1:
            return {static_cast<char>(byte | 0x80U)};
        case 2:
            return "ü";
        default:
            return {static_cast<char>('a' + byte % 26)};
        }
    }

    std::mt19937 m_random{20250301};
};

TEST_F(AnswerText, IsTextAndJsonWhateverBytesARequestHolds)
{
    ServiceProcess service(home.path(), {"gui", "serve", "--listen", "127.0.0.1:0", "--lab", "demo"});
    port = service.awaitPort();
    Bytes bytes;
    int echoed = 0;
    for (int round = 0; round < 60; ++round) {
        const std::string some = bytes.next();
        const std::string name = R"({"Name": ")" + some + R"(", ")" + bytes.next() + R"(": 1})";
        const RawClient::Answer report = ask("GET", "/api/reports/path?target=" + some + "&ping_count=1");
        echoed += report.result_int() == 200U ? 1 : 0;
        read(report);
        read(ask("GET", "/api/" + some));
        read(ask("POST", "/api/profiles/" + some + "/login"));
        read(ask("DELETE", "/api/tunnels/" + some));
        read(ask("POST", "/api/publications/" + some + "/start"));
        read(ask("POST", "/api/tunnels", name));
        read(ask("POST", "/api/publications", name));
        read(ask("POST", "/api/feedback", name));
        read(ask("POST", "/api/config?force=" + some, name));
    }
    EXPECT_GT(echoed, 5) << "targets that are text are still asked for";
}

TEST_F(AnswerText, TellsFoldersWhoseNamesAreNoText)
{
    support = "data" + escape;
    fs::create_directory(home / ("bin" + escape));
    home.write("bin" + escape + "/tailscaled", "");
    fs::permissions(home / ("bin" + escape + "/tailscaled"), fs::perms(0700));
    ServiceProcess service(home.path(), {"gui", "serve", "--listen", "127.0.0.1:0"},
        {{"XDG_DATA_HOME", (home / support).string()}, {"XDG_CONFIG_HOME", (home / ("conf" + escape)).string()},
            {"PATH", (home / ("bin" + escape)).string()}});
    port = service.awaitPort();
    EXPECT_EQ(read(ask("GET", "/api/environment")),
        (boost::json::value{
            {"TailscaledAvailable", true}, {"TailscaledBin", home.path().string() + "/bin\uFFFD/tailscaled"}}));
    const std::string config = ask("GET", "/api/config").body();
    EXPECT_EQ(read(ask("POST", "/api/config", config)),
        (boost::json::value{{"status", "saved"}, {"path", home.path().string() + "/conf\uFFFD/veranox/config.json"}}));
    home.write("conf" + escape + "/veranox/config.json", "{}");
    const RawClient::Answer refused = ask("POST", "/api/config", config);
    EXPECT_EQ(refused.result_int(), 409U);
    EXPECT_THAT(
        std::string(read(refused).at("error").as_string()), HasSubstr("/conf\uFFFD/veranox/config.json was changed"));
}

} // namespace

} // namespace veranox
