#include "Tests/Service/Control/SaveConfig.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace test::save_config;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(SaveConfig, AnswersStatusAndPathAndTakesTheDocumentOver)
{
    json::object next = document();
    next["Router"].as_object()["HTTPProxy"] = "127.0.0.1:50000";
    next["Profiles"].as_object()["new"] = json::object{{"Suffixes", {".new.ts.net"}}};
    const ControlAnswer answer = save(next);
    ASSERT_EQ(answer.status, 200U) << test::errorOf(answer);
    EXPECT_EQ(answer.body, (json::value{{"status", "saved"}, {"path", (bed.folder() / "config.json").string()}}));
    EXPECT_EQ(document()["Router"].at("HTTPProxy"), "127.0.0.1:50000");
    EXPECT_EQ(bed.ask("GET", "/api/profiles").body.as_array().size(), 3U);
    EXPECT_EQ(onDisk()["Router"].at("HTTPProxy"), "127.0.0.1:50000");
}

TEST_F(SaveConfig, TunnelsPublicationsAndUnknownKeysSurvive)
{
    json::object next = document();
    next["Profiles"].as_object()["work"].as_object()["DisplayName"] = "Office";
    ASSERT_EQ(save(next).status, 200U);
    const json::object saved = onDisk();
    EXPECT_EQ(saved.at("Future"), (json::value{1, 2}));
    EXPECT_EQ(saved.at("Security").at("Extra"), 7);
    EXPECT_EQ(saved.at("Profiles").at("work").at("Note"), "mine");
    EXPECT_EQ(saved.at("Profiles").at("work").at("DisplayName"), "Office");
    EXPECT_EQ(saved.at("Tunnels").at("db").at("Target"), "db:5432");
    EXPECT_EQ(saved.at("Publications").at("web").at("Port"), 443);
}

TEST_F(SaveConfig, WhatWasUnknownInAProfileGoesWithIt)
{
    json::object next = document();
    const json::value work = next["Profiles"].at("work");
    next["Profiles"].as_object().erase("work");
    ASSERT_EQ(save(next).status, 200U);
    next["Profiles"].as_object()["work"] = work;
    ASSERT_EQ(save(next).status, 200U);
    EXPECT_FALSE(onDisk()["Profiles"].at("work").as_object().contains("Note"));
}

TEST_F(SaveConfig, SuffixWithinAnotherOneIsNoOverlap)
{
    json::object next = document();
    next["Profiles"].as_object()["lab"] = json::object{{"Suffixes", {".lab.work.ts.net"}}};
    EXPECT_EQ(save(next).status, 200U) << "the longer one decides";
}

TEST_F(SaveConfig, AProfileThatIsUsedMayGoWithForceAlone)
{
    json::object next = document();
    next["Profiles"].as_object().erase("work");
    EXPECT_EQ(test::errorOf(save(next, "/api/config")),
        "The profile \"work\" is still used by tunnel \"db\"; delete that first, or save with force=true.");
    EXPECT_EQ(save(next).status, 200U);
    const json::value tunnel = bed.ask("GET", "/api/tunnels").body.at(0);
    EXPECT_EQ(tunnel.at("State"), "error");
    EXPECT_EQ(tunnel.at("LastError"), "The profile \"work\" is not configured.");
    const json::value web = bed.ask("GET", "/api/publications").body.at(0);
    EXPECT_THAT(std::string(web.at("LastError").as_string()), ::testing::Not(HasSubstr("not configured")));
}

TEST_F(SaveConfig, AFileThatAnotherProgramChangedIsReplacedWithForceAlone)
{
    const json::object next = document();
    bed.folder().write("config.json", "changed by hand");
    const ControlAnswer refused = save(next, "/api/config");
    EXPECT_EQ(refused.status, 409U);
    EXPECT_EQ(test::errorOf(refused),
        "The configuration file " + (bed.folder() / "config.json").string()
            + " was changed by another program; restart the service so that it takes the change over.");
    EXPECT_EQ(bed.folder().read("config.json"), "changed by hand");
    EXPECT_EQ(save(next).status, 200U);
    EXPECT_THAT(
        bed.folder().names(), ElementsAre("config.json", "config.json.replaced-20250301T081530Z", "control.token"));
    EXPECT_EQ(bed.folder().read("config.json.replaced-20250301T081530Z"), "changed by hand");
    EXPECT_EQ(save(next, "/api/config").status, 200U) << "its own write is no change by others";
}

TEST_F(SaveConfig, WithoutAFileTheFirstDocumentIsSaved)
{
    std::filesystem::remove(bed.folder() / "config.json");
    EXPECT_EQ(save(document(), "/api/config").status, 200U);
    EXPECT_EQ(onDisk()["Profiles"].as_object().size(), 2U);
}

TEST_F(SaveConfig, NeedsTheToken)
{
    ControlRequest request = bed.request("POST", std::string(path), "{}");
    request.tokens.clear();
    const std::string before = bed.filesOnDisk();
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 403U);
    EXPECT_EQ(bed.filesOnDisk(), before);
}

TEST(SaveConfigLimits, DocumentThatCouldNotBeReadAgainIsNotWritten)
{
    json::object big = parseJson(file).as_object();
    big["Future"] = std::string(ConfigStore::sizeLimit - 3000, 'x');
    test::ApiBed bed(json::serialize(big));
    json::object next = bed.ask("GET", "/api/config").body.as_object();
    for (int i = 0; i < 20; ++i)
        next["Profiles"].as_object()["p" + std::to_string(i)] =
            json::object{{"StateDir", std::string(1000, 's')}, {"Socket", ""}};
    const std::string before = bed.filesOnDisk();
    const ControlAnswer answer = bed.ask("POST", std::string(path), json::serialize(next));
    EXPECT_EQ(answer.status, 500U);
    EXPECT_THAT(test::errorOf(answer), HasSubstr("would have more than 4194304 bytes"));
    EXPECT_EQ(bed.filesOnDisk(), before);
}

} // namespace

} // namespace veranox
