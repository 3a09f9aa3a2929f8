#include "Tests/Service/Control/TunnelWrites.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace test::tunnel_writes;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(TunnelWrites, CreateAnswersTheWholeListAndPicksAnAddress)
{
    const ControlAnswer answer = post("", std::string(good));
    EXPECT_THAT(names(answer), ElementsAre("db", "cache", "deep", "new"));
    EXPECT_EQ(answer.body, bed.ask("GET", "/api/tunnels").body);
    EXPECT_EQ(answer.body.at(3).at("Listen"), "127.0.0.1:43303");
    EXPECT_EQ(onDisk("new").at("Listen"), "127.0.0.1:43303");
    EXPECT_EQ(onDisk("new").at("Target"), "new.work.ts.net:80");
    ASSERT_EQ(bed.traffic().applied.size(), 2U);
    EXPECT_EQ(bed.traffic().applied.back().tunnels.size(), 4U);
}

TEST_F(TunnelWrites, EditKeepsPlaceAndUnknownKeys)
{
    const ControlAnswer answer = post("",
        save(R"({"Name": "db", "OriginalName": "db"})", R"({"Listen": "LOCALHOST:43300", "Target": "[::1]:5433"})"));
    EXPECT_THAT(names(answer), ElementsAre("db", "cache", "deep"));
    EXPECT_EQ(onDisk("db").at("Target"), "[::1]:5433");
    EXPECT_EQ(onDisk("db").at("Listen"), "127.0.0.1:43300");
    EXPECT_EQ(onDisk("db").at("Note"), "mine");
}

TEST_F(TunnelWrites, RenameTakesEverythingAlong)
{
    const ControlAnswer answer =
        post("", save(R"({"Name": "store", "OriginalName": "db"})", R"({"Listen": "127.0.0.1:43300"})"));
    EXPECT_THAT(names(answer), ElementsAre("store", "cache", "deep"));
    EXPECT_EQ(onDisk("db"), nullptr);
    EXPECT_EQ(onDisk("store").at("Note"), "mine");
}

TEST_F(TunnelWrites, ThroughABastion)
{
    EXPECT_EQ(
        post("", ssh(R"({"Bastion": "b.example:2222", "User": "me", "Auth": "key", "IdentityFile": "/k"})")).status,
        200U);
    EXPECT_EQ(onDisk("new").at("SSH").at("IdentityFile"), "/k");
}

TEST_F(TunnelWrites, Delete)
{
    EXPECT_THAT(names(bed.ask("DELETE", "/api/tunnels/db")), ElementsAre("cache", "deep"));
    EXPECT_EQ(onDisk("db"), nullptr);
    EXPECT_EQ(bed.traffic().applied.back().tunnels.size(), 2U);
}

TEST_F(TunnelWrites, StartAndStopSwitchTheDocument)
{
    EXPECT_EQ(post("/cache/start").body.at(1).at("Disabled"), false);
    EXPECT_EQ(onDisk("cache").at("Disabled"), false);
    EXPECT_EQ(post("/cache/stop").body.at(1).at("Disabled"), true);
    EXPECT_EQ(onDisk("cache").at("Disabled"), true);
    EXPECT_EQ(bed.traffic().applied.size(), 3U);
}

TEST_F(TunnelWrites, WhatIsSwitchedThatWayAlreadyIsLeftAlone)
{
    const std::string files = bed.filesOnDisk();
    EXPECT_EQ(names(post("/db/start")).size(), 3U);
    EXPECT_EQ(names(post("/cache/stop")).size(), 3U);
    EXPECT_EQ(bed.filesOnDisk(), files);
    EXPECT_TRUE(bed.traffic().restartedTunnels.empty());
    bed.traffic().tunnels["db"].state = "error";
    EXPECT_EQ(names(post("/db/start")).size(), 3U);
    EXPECT_THAT(bed.traffic().restartedTunnels, ElementsAre("db")) << "one that broke is tried again";
}

TEST_F(TunnelWrites, Restart)
{
    EXPECT_THAT(names(post("/db/restart")), ElementsAre("db", "cache", "deep"));
    EXPECT_THAT(bed.traffic().restartedTunnels, ElementsAre("db"));
}

TEST_F(TunnelWrites, SecretIsHandedOnAndNeverWritten)
{
    const std::string files = bed.filesOnDisk();
    EXPECT_EQ(names(post("/deep/secret", R"({"Password": "s3cret ünd \"more\""})")).size(), 3U);
    EXPECT_EQ(bed.traffic().secrets.at("deep"), "s3cret ünd \"more\"");
    EXPECT_EQ(bed.filesOnDisk(), files);
    EXPECT_EQ(post("", std::string(good)).status, 200U);
    EXPECT_THAT(bed.filesOnDisk(), Not(HasSubstr("s3cret")));
    EXPECT_THAT(json::serialize(bed.ask("GET", "/api/tunnels").body), Not(HasSubstr("s3cret")));
}

TEST_F(TunnelWrites, FileThatAnotherProgramChangedIsNotWrittenOver)
{
    bed.folder().write("config.json", "changed by hand");
    const std::string sentence = "The configuration file " + (bed.folder() / "config.json").string()
        + " was changed by another program; restart the service so that it takes the change over.";
    test::expectRefused(bed, {"POST", "/api/tunnels", std::string(good), 409, sentence});
    test::expectRefused(bed, {"DELETE", "/api/tunnels/db", "", 409, sentence});
    test::expectRefused(bed, {"POST", "/api/tunnels/db/stop", "", 409, sentence});
}

TEST_F(TunnelWrites, EachNeedsTheToken)
{
    for (const auto &[method, path] : {std::pair("POST", ""), {"DELETE", "/db"}, {"POST", "/cache/start"},
             {"POST", "/db/stop"}, {"POST", "/db/restart"}, {"POST", "/deep/secret"}}) {
        ControlRequest request = bed.request(method, std::string("/api/tunnels") + path, std::string(good));
        request.tokens.clear();
        EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 403U) << path;
    }
    EXPECT_EQ(bed.traffic().applied.size(), 1U);
    EXPECT_TRUE(bed.traffic().restartedTunnels.empty());
}

} // namespace

} // namespace veranox
