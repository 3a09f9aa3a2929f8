#include "Tests/Service/Support/FailingDisk.h"
#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>
#include <list>
#include <optional>
#include <thread>

namespace veranox {

namespace {

namespace json = boost::json;
using test::FailingDisk;
using test::RawClient;
using test::RunningServer;

/// A server whose disk does not come to an end with a save, until release().
class SlowDisk : public ::testing::Test {
protected:
    std::string saveOf(const RawClient &client, const std::string &hostnameBase) const
    {
        json::object config = json::parse(R"({"Version": 1, "Router": {}, "Profiles": {},
            "Tailscale": {"TailscaleBin": "a", "TailscaledBin": "b"}, "Paths": {"AppSupportDir": "", "ConfigDir": ""},
            "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false,
                "AllowIPLiterals": false, "AllowUnknownTSNet": false}})")
                                  .as_object();
        config["Router"].as_object()["ProfileHostnameBase"] = hostnameBase;
        const std::string body = json::serialize(config);
        return client.request("POST", "/api/config?force=true",
                   server.tokenLine() + "Content-Length: " + std::to_string(body.size()) + "\r\n")
            + body;
    }
    std::string hostnameBase() const
    {
        RawClient client(server.port());
        const json::value config = json::parse(client.exchange(client.request("GET", "/api/config")).body());
        return std::string(config.at("Router").at("ProfileHostnameBase").as_string());
    }
    /// Begins a save and returns once it hangs.
    RawClient &beginSave(const std::string &hostnameBase)
    {
        clients.emplace_back(server.port());
        clients.back().send(saveOf(clients.back(), hostnameBase));
        while (disk->count() == 0)
            std::this_thread::yield();
        return clients.back();
    }
    /// Connections and their bytes are seen in their order, so what was sent before these has been, too.
    void letItBeSeen() const
    {
        for (int i = 0; i < 5; ++i)
            hostnameBase();
    }
    void release() { disk.reset(); }

    RunningServer server{{}};
    std::list<RawClient> clients;
    std::optional<FailingDisk> disk{FailingDisk::Step::waitForFlush};
};

TEST_F(SlowDisk, ReadsAreAnsweredMeanwhileWithTheOldDocument)
{
    RawClient &saving = beginSave("next");
    EXPECT_EQ(hostnameBase(), "veranox");
    for (const std::string path : {"/", "/api/health", "/api/profiles", "/api/tunnels", "/api/publications",
             "/api/environment", "/api/reports/path?target=a"}) {
        RawClient client(server.port());
        EXPECT_EQ(client.exchange(client.request("GET", path)).result_int(), 200U) << path;
    }
    release();
    EXPECT_EQ(saving.receive().result_int(), 200U);
    EXPECT_EQ(hostnameBase(), "next");
}

TEST_F(SlowDisk, SavesAreDoneOneAfterTheOtherInTheirOrder)
{
    std::list<RawClient *> saving{&beginSave("save0")};
    for (int i = 1; i <= 5; ++i) {
        clients.emplace_back(server.port());
        clients.back().send(saveOf(clients.back(), "save" + std::to_string(i)));
        saving.push_back(&clients.back());
        letItBeSeen();
    }
    release();
    for (RawClient *client : saving)
        EXPECT_EQ(client->receive().result_int(), 200U);
    EXPECT_EQ(hostnameBase(), "save5");
}

TEST_F(SlowDisk, MoreSavesThanAnyoneNeedsAreRefusedForNow)
{
    RawClient &saving = beginSave("next");
    constexpr int most = 16;
    std::list<RawClient> waiting;
    for (int i = 0; i < most; ++i) {
        waiting.emplace_back(server.port());
        waiting.back().send(saveOf(waiting.back(), "next"));
        letItBeSeen();
    }
    RawClient late(server.port());
    const RawClient::Answer answer = late.exchange(saveOf(late, "late"));
    EXPECT_EQ(answer.result_int(), 503U);
    EXPECT_EQ(json::parse(answer.body()).at("error"),
        "Too many changes are waiting for the disk; try again in some seconds.");
    release();
    EXPECT_EQ(saving.receive().result_int(), 200U);
    for (RawClient &client : waiting)
        EXPECT_EQ(client.receive().result_int(), 200U);
    EXPECT_EQ(hostnameBase(), "next");
}

} // namespace

} // namespace veranox
