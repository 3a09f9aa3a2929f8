#include "Service/Json/JsonText.h"
#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace veranox {

namespace {

namespace json = boost::json;
using namespace std::chrono_literals;
using test::RawClient;
using test::ServiceProcess;
using Clock = std::chrono::steady_clock;

const std::vector<std::string> serve{"gui", "serve", "--listen", "127.0.0.1:0"};

class Durability : public ::testing::Test {
protected:
    Durability()
    {
        std::filesystem::create_directories((home / ".config/veranox"));
        home.write(".config/veranox/config.json", json::serialize(document(0, true)));
    }

    /// Which save a document comes from stands in its host name base, and again in something much longer that is
    /// written later, so that a mixture of two would show.
    static json::object document(int save, bool isFile = false)
    {
        json::object made = json::parse(R"({"Version": 1, "Router": {},
            "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
            "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"}, "Profiles": {},
            "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false,
                "AllowIPLiterals": false, "AllowUnknownTSNet": false}})")
                                .as_object();
        const std::string mark = std::to_string(save);
        made["Router"].as_object()["ProfileHostnameBase"] = "save" + mark;
        for (int i = 0; i < 40; ++i)
            made["Profiles"].as_object()["p" + std::to_string(i)] = json::object{
                {"DisplayName", "save" + mark}, {"StateDir", std::string(900, static_cast<char>('a' + save % 26))}};
        // Room for the ports of forty profiles.
        made["Router"].as_object()["ProfileHTTPProxyBase"] = 51000;
        made["Router"].as_object()["ProfileSOCKS5Base"] = 51001;
        if (isFile)
            made["Future"] = "kept";
        return made;
    }

    /// The number of the save that the file comes from, whole; -1 when it is no such document.
    int saveOnDisk() const
    {
        const json::object file = parseJson(home.read(".config/veranox/config.json")).as_object();
        const int save = std::stoi(std::string(file.at("Router").at("ProfileHostnameBase").as_string()).substr(4));
        const json::object written = document(save);
        for (const auto &[name, profile] : written.at("Profiles").as_object())
            for (const auto &[key, value] : profile.as_object())
                if (file.at("Profiles").at(name).at(key) != value)
                    return -1;
        return file.at("Profiles").as_object().size() == 40 && file.at("Future") == "kept" ? save : -1;
    }

    std::string saveRequest(const RawClient &client, int save) const
    {
        const std::string body = json::serialize(document(save));
        return client.request("POST", "/api/config?force=true",
                   "X-Veranox-Token: " + home.read(".local/share/Veranox/control.token").substr(0, 64)
                       + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n")
            + body;
    }

    test::TemporaryFolder home;
};

/// The longest time that a kill waits follows the saves: a little longer after one that came too late to count, a
/// little shorter after one that counted. So kills fall on every moment of a save, whatever machine runs it.
class KillWindow {
public:
    std::chrono::microseconds next()
    {
        return std::chrono::microseconds(
            std::uniform_int_distribution<std::int64_t>(0, static_cast<std::int64_t>(m_longest))(m_random));
    }
    void sawOutcome(bool isSaved) { m_longest = std::min(m_longest * (isSaved ? 0.95 : 1.05), 500000.0); }

private:
    double m_longest = 10000;
    std::mt19937 m_random{20250301};
};

TEST_F(Durability, KilledAtAnyMomentTheFileIsTheDocumentBeforeOrAfter)
{
    constexpr int saves = 200;
    {
        ServiceProcess service(home.path(), serve);
        RawClient client(service.awaitPort());
        ASSERT_EQ(client.exchange(saveRequest(client, 0)).result_int(), 200U) << "the document is a good one";
    }
    KillWindow window;
    int last = 0;
    int kept = 0;
    const Clock::time_point begin = Clock::now();
    for (int save = 1; save <= saves; ++save) {
        ServiceProcess service(home.path(), serve);
        const std::uint16_t port = service.awaitPort();
        ASSERT_NE(port, 0) << "it starts with what the kill left";
        RawClient client(port);
        const json::value served = json::parse(client.exchange(client.request("GET", "/api/config")).body());
        ASSERT_EQ(served.at("Router").at("ProfileHostnameBase"), json::value("save" + std::to_string(last)));
        const std::string request = saveRequest(client, save);
        const Clock::time_point kill = Clock::now() + window.next();
        client.send(request);
        while (Clock::now() < kill)
            std::this_thread::yield();
        service.signal(SIGKILL);
        ASSERT_EQ(service.awaitEnd(), -1);
        const int found = saveOnDisk();
        ASSERT_TRUE(found == last || found == save) << "save " << save << " after " << last << " left " << found;
        window.sawOutcome(found == save);
        kept += found == last ? 1 : 0;
        last = found;
    }
    const std::chrono::duration<double> took = Clock::now() - begin;
    RecordProperty("seconds", std::to_string(took.count()));
    RecordProperty("kills_before_the_save_counted", kept);
    std::cout << saves << " saves, " << kept << " killed before they counted, " << took.count() << " s\n";
    EXPECT_GT(kept, saves / 10) << "the kills came too late to prove anything";
    EXPECT_LT(kept, saves - saves / 10) << "the kills came too early to prove anything";
}

} // namespace

} // namespace veranox
