#include "Tests/Service/Control/SaveConfig.h"
#include "Tests/Service/Support/FailingDisk.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace test::save_config;
using test::FailingDisk;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A step of a save that fails, and what of the save is done all the same.
struct Case {
    FailingDisk::Step step;
    std::string says;
    bool isSaved = false;
};

class DiskFailure : public SaveConfig, public ::testing::WithParamInterface<Case> {
protected:
    json::object renamed(const std::string &name)
    {
        json::object next = document();
        next["Profiles"].as_object()["work"].as_object()["DisplayName"] = name;
        return next;
    }
    std::string nameInMemory() { return std::string(document()["Profiles"].at("work").at("DisplayName").as_string()); }
    std::string nameOnDisk() const
    {
        return std::string(onDisk()["Profiles"].at("work").at("DisplayName").as_string());
    }
};

TEST_P(DiskFailure, LeavesFileAndDocumentAsOne)
{
    const json::object next = renamed("Next");
    ControlAnswer answer;
    {
        const FailingDisk failing(GetParam().step);
        answer = save(next, "/api/config");
        EXPECT_GT(failing.count(), 0);
    }
    const std::string expected = GetParam().isSaved ? "Next" : "Work";
    EXPECT_EQ(nameInMemory(), expected);
    EXPECT_EQ(nameOnDisk(), expected);
    EXPECT_THAT(bed.folder().names(), ElementsAre("config.json", "control.token")) << "nothing half done is left";
    if (GetParam().isSaved) {
        EXPECT_EQ(answer.status, 200U) << test::errorOf(answer);
        EXPECT_THAT(bed.lines(), Contains(HasSubstr(GetParam().says)));
        EXPECT_EQ(bed.traffic().applied.size(), 2U);
    } else {
        EXPECT_EQ(answer.status, 500U);
        EXPECT_THAT(test::errorOf(answer), HasSubstr(GetParam().says));
        EXPECT_EQ(bed.traffic().applied.size(), 1U);
    }
    EXPECT_EQ(save(renamed("Later"), "/api/config").status, 200U) << "a later save is not refused";
    EXPECT_EQ(nameOnDisk(), "Later");
}

INSTANTIATE_TEST_SUITE_P(Save, DiskFailure,
    ::testing::Values(Case{FailingDisk::Step::make, "(making the new file: Permission denied)"},
        Case{FailingDisk::Step::write, "(writing the new content: No space left on device)"},
        Case{FailingDisk::Step::writeInPart, "(writing the new content: No space left on device)"},
        Case{FailingDisk::Step::flushFile, "(bringing the new file to the disk: Input/output error)"},
        Case{FailingDisk::Step::rename, "(putting the new file in its place: Input/output error)"},
        Case{FailingDisk::Step::flushFolder, "event_code=config_unconfirmed", true}));

TEST_F(SaveConfig, FeedbackThatTheDiskDidNotTakeIsNotThere)
{
    const std::string body = R"({"message": "m", "kind": "", "contact": "", "appVersion": "", "os": ""})";
    ASSERT_EQ(bed.ask("POST", "/api/feedback", body).status, 200U);
    const std::string before = bed.folder().read("support/feedback.jsonl");
    for (const FailingDisk::Step step : {FailingDisk::Step::make, FailingDisk::Step::write,
             FailingDisk::Step::writeInPart, FailingDisk::Step::flushFile}) {
        const FailingDisk failing(step);
        const ControlAnswer answer = bed.ask("POST", "/api/feedback", body);
        EXPECT_EQ(answer.status, 503U);
        EXPECT_THAT(test::errorOf(answer), StartsWith("The feedback could not be kept in "));
        EXPECT_GT(failing.count(), 0);
        EXPECT_EQ(bed.folder().read("support/feedback.jsonl"), before);
    }
    EXPECT_EQ(bed.ask("POST", "/api/feedback", body).status, 200U);
}

TEST_F(SaveConfig, AnUnreadableFileIsLeftAloneAtTheStart)
{
    ConfigStore store(bed.folder().path());
    {
        const FailingDisk failing(FailingDisk::Step::read);
        EXPECT_THROW(store.load(bed.time().wallNow()), std::exception);
    }
    EXPECT_THAT(bed.folder().names(), ElementsAre("config.json", "control.token"));
    EXPECT_EQ(bed.folder().read("config.json"), file);
}

} // namespace

} // namespace veranox
