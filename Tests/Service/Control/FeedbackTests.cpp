#include "Service/Control/FeedbackBox.h"
#include "Tests/Service/Support/FileSizeLimit.h"
#include "Tests/Service/Support/RefusalTable.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace veranox {

namespace {

namespace fs = std::filesystem;
namespace json = boost::json;

class Feedback : public ::testing::Test {
protected:
    static std::string body(const std::string &key = "", const json::value &value = nullptr)
    {
        json::object made{{"message", "It\nworks – \"well\""}, {"kind", "praise"}, {"contact", ""},
            {"appVersion", "1.0"}, {"os", "Linux"}};
        if (value.is_null())
            made.erase(key);
        else
            made[key] = value;
        return json::serialize(made);
    }
    static json::value letters(std::size_t count) { return json::value(json::string(count, 'x')); }
    ControlAnswer send(const std::string &text) { return bed.ask("POST", "/api/feedback", text); }
    std::string kept() const { return bed.folder().read("support/feedback.jsonl"); }

    test::ApiBed bed;
};

TEST_F(Feedback, IsKeptALineEachForThisUserAlone)
{
    const ControlAnswer answer = send(body());
    EXPECT_EQ(answer.status, 200U) << test::errorOf(answer);
    EXPECT_FALSE(answer.body.as_object().contains("url"));
    const std::string line = R"({"message":"It\nworks – \"well\"","kind":"praise","contact":"","appVersion":"1.0",)"
                             R"("os":"Linux","receivedAt":"2025-03-01T08:15:30.000Z"})"
                             "\n";
    EXPECT_EQ(kept(), line);
    EXPECT_EQ(send(body()).status, 200U);
    EXPECT_EQ(kept(), line + line);
    EXPECT_EQ(fs::status(bed.folder() / "support/feedback.jsonl").permissions(),
        fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Feedback, Refusals)
{
    const std::pair<std::string, std::string> cases[] = {
        {"", "decoding JSON body: line 1, column 1: the text ends before the JSON value does."},
        {body("message"), R"(decoding JSON body: the top level: the key "message" is missing.)"},
        {body("kind"), R"(decoding JSON body: the top level: the key "kind" is missing.)"},
        {body("contact"), R"(decoding JSON body: the top level: the key "contact" is missing.)"},
        {body("appVersion"), R"(decoding JSON body: the top level: the key "appVersion" is missing.)"},
        {body("os"), R"(decoding JSON body: the top level: the key "os" is missing.)"},
        {body("os", 7), "decoding JSON body: os: must be a text in double quotes."},
        {body("more", "x"), R"(decoding JSON body: the top level: unknown field "more".)"},
        {body("message", ""), "The field message is empty."},
        {body("message", letters(20001)), "The field message has more than 20000 bytes."},
        {body("kind", letters(65)), "The field kind has more than 64 bytes."},
        {body("contact", letters(321)), "The field contact has more than 320 bytes."},
        {body("appVersion", letters(129)), "The field appVersion has more than 128 bytes."},
        {body("os", letters(129)), "The field os has more than 128 bytes."}};
    for (const auto &[text, sentence] : cases) {
        const ControlAnswer answer = send(text);
        EXPECT_EQ(test::errorOf(answer), sentence);
        EXPECT_EQ(answer.status, 400U);
    }
    EXPECT_FALSE(fs::exists(bed.folder() / "support"));
    ControlRequest request = bed.request("POST", "/api/feedback", body());
    request.tokens.clear();
    EXPECT_EQ(test::awaitAnswer(bed.api(), request).status, 403U);
    EXPECT_FALSE(fs::exists(bed.folder() / "support"));
}

TEST_F(Feedback, AFullFileMakesRoomForANewOne)
{
    const fs::path file = bed.folder() / "support/feedback.jsonl";
    const fs::path former = bed.folder() / "support/feedback.jsonl.1";
    ASSERT_EQ(send(body()).status, 200U);
    const std::string line = kept();
    for (int round = 0; round < 3; ++round) {
        fs::resize_file(file, FeedbackBox::sizeLimit - 10);
        const std::string full = kept();
        const ControlAnswer answer = send(body());
        EXPECT_EQ(answer.status, 200U) << test::errorOf(answer);
        EXPECT_EQ(kept(), line);
        EXPECT_EQ(bed.folder().read("support/feedback.jsonl.1"), full) << "what came last is kept";
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(bed.folder() / "support"), {}), 2) << "and no more than that";
    fs::remove(former);
    fs::create_directory(former);
    fs::resize_file(file, FeedbackBox::sizeLimit);
    EXPECT_EQ(send(body()).status, 503U) << "nothing is thrown away for it";
    EXPECT_EQ(fs::file_size(file), FeedbackBox::sizeLimit);
}

TEST_F(Feedback, BehindATornLineIsALineOfItsOwn)
{
    ASSERT_EQ(send(body()).status, 200U);
    const std::string line = kept();
    fs::resize_file(bed.folder() / "support/feedback.jsonl", line.size() / 2);
    ASSERT_EQ(send(body()).status, 200U);
    EXPECT_EQ(kept(), line.substr(0, line.size() / 2) + "\n" + line);
}

TEST_F(Feedback, WhatAFullDiskTookHalfIsTakenBack)
{
    ASSERT_EQ(send(body()).status, 200U);
    const std::string before = kept();
    {
        const test::FileSizeLimit full(before.size() + 20);
        EXPECT_EQ(send(body()).status, 503U);
    }
    EXPECT_EQ(kept(), before);
}

TEST_F(Feedback, ALinkInItsPlaceIsNotFollowed)
{
    bed.folder().write("elsewhere", "mine\n");
    fs::create_directory(bed.folder() / "support");
    fs::create_symlink(bed.folder() / "elsewhere", bed.folder() / "support/feedback.jsonl");
    EXPECT_EQ(send(body()).status, 503U);
    EXPECT_EQ(bed.folder().read("elsewhere"), "mine\n");
}

} // namespace

} // namespace veranox
