#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonReader.h"
#include "Service/Json/JsonText.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace veranox {

namespace {

/// The complaint, place and text, of what the function throws; empty when it throws nothing.
std::string complaintOf(const std::function<void()> &run)
{
    try {
        run();
    } catch (const JsonProblem &problem) {
        return problem.what();
    }
    return "";
}

TEST(JsonText, NamesLineAndColumnOfTheFirstMistake)
{
    EXPECT_EQ(complaintOf([] { parseJson("{\n  \"a\": tru,\n}"); }), "line 2, column 8: syntax error");
    EXPECT_TRUE(complaintOf([] { parseJson("{\"a\": 1,}"); }).starts_with("line 1, column 9: "));
    EXPECT_TRUE(complaintOf([] { parseJson("\n\n}"); }).starts_with("line 3, column 1: "));
}

TEST(JsonText, TellsATextThatEndsEarly)
{
    EXPECT_EQ(
        complaintOf([] { parseJson("{\"a\":\n[1"); }), "line 2, column 3: the text ends before the JSON value does");
    EXPECT_EQ(complaintOf([] { parseJson(""); }), "line 1, column 1: the text ends before the JSON value does");
}

TEST(JsonText, RefusesTextBehindTheValue)
{
    EXPECT_EQ(complaintOf([] { parseJson("{}\nx"); }),
        "line 2, column 1: there is more text after the end of the JSON value");
    EXPECT_EQ(complaintOf([] { parseJson("{} \n"); }), "");
}

TEST(JsonText, RefusesAKeyThatStandsTwice)
{
    EXPECT_EQ(complaintOf([] { parseJson(R"({"x": {"a": 1, "b": {"a": 2}, "a": 3}})"); }),
        "the key \"a\": stands twice in one object, so one of the two would be lost");
    EXPECT_TRUE(complaintOf([] { parseJson(R"({"x": 1, "x": 2, "y": 1, "y": 2})"); }).starts_with("the key \"x\""));
    EXPECT_EQ(complaintOf([] { parseJson(R"([{"a": 1}, {"a": 2}, {"b": {"a": 1}, "a": 0}])"); }), "");
    EXPECT_NE(complaintOf([] { parseJson(R"({"a": 1, "\u0061": 2})"); }), "") << "however it is spelled";
}

TEST(JsonText, RefusesEndlessNesting)
{
    EXPECT_NE(complaintOf([] { parseJson(std::string(100000, '[')); }), "");
}

TEST(JsonText, PrettyTextReadsBackTheSame)
{
    const boost::json::value value = parseJson(R"({"a": [1, "x\n\"y", {}], "b": {"c": null, "d": []}, "e": -2.5})");
    const std::string text = prettyJson(value);
    EXPECT_EQ(parseJson(text), value);
    EXPECT_EQ(prettyJson(parseJson(R"({"a": [1], "b": {}})")), "{\n  \"a\": [\n    1\n  ],\n  \"b\": {}\n}\n");
}

TEST(JsonText, IsTextAndJsonWhateverBytesAreInTheValue)
{
    std::mt19937 random(20250301);
    const auto bytes = [&] {
        std::string text(random() % 12, ' ');
        for (char &byte : text)
            byte = static_cast<char>(random() % 256);
        return text;
    };
    for (int i = 0; i < 2000; ++i) {
        const boost::json::value value{{bytes(), bytes()}, {"list", {bytes(), 1, {{bytes(), nullptr}}}}};
        for (const std::string &text : {compactJson(value), prettyJson(value)}) {
            boost::json::error_code failure;
            const boost::json::value read = boost::json::parse(text, failure); // which checks UTF-8 as well
            ASSERT_FALSE(failure) << failure.message() << ": " << text;
            ASSERT_TRUE(read.at("list").at(0).is_string()) << text;
        }
    }
}

TEST(JsonText, ReplacesOnlyWhatIsNoText)
{
    EXPECT_EQ(
        compactJson({{"a\xff", "b\xc3"}, {"c", "ü\n\"\x7f"}}), "{\"a\uFFFD\":\"b\uFFFD\",\"c\":\"ü\\n\\\"\x7f\"}");
    EXPECT_EQ(prettyJson({{"a\xff", "b\xc3"}}), "{\n  \"a\uFFFD\": \"b\uFFFD\"\n}\n");
}

class Reader : public ::testing::Test {
protected:
    boost::json::value value = parseJson(
        R"({"text": "t", "flag": true, "number": 7, "list": ["a", 1], "object": {"inner": {}}, "null": null, "A B": 1})");
    JsonReader reader{value, ""};
};

TEST_F(Reader, ReadsWhatIsThere)
{
    EXPECT_EQ(reader.text("text"), "t");
    EXPECT_TRUE(reader.flag("flag"));
    EXPECT_EQ(reader.number("number", {0, 9}), 7);
    EXPECT_EQ(reader.object("object").object("inner").place(), "object.inner");
}

TEST_F(Reader, NullCountsAsMissing)
{
    EXPECT_EQ(reader.text("null", "f"), "f");
    EXPECT_EQ(complaintOf([&] { reader.text("null"); }), "the top level: the key \"null\" is missing");
    EXPECT_FALSE(reader.objectIfPresent("null"));
}

TEST_F(Reader, ComplaintsNameThePlace)
{
    EXPECT_EQ(complaintOf([&] { reader.text("flag"); }), "flag: must be a text in double quotes");
    EXPECT_EQ(complaintOf([&] { reader.flag("text"); }), "text: must be true or false");
    EXPECT_EQ(complaintOf([&] { reader.flag("gone"); }), "the top level: the key \"gone\" is missing");
    EXPECT_EQ(complaintOf([&] { reader.number("number", {1, 6}); }), "number: must be a whole number from 1 to 6");
    EXPECT_EQ(complaintOf([&] { reader.number("text", {1, 6}, 2); }), "text: must be a whole number from 1 to 6");
    EXPECT_EQ(complaintOf([&] { reader.texts("list"); }), "list[1]: must be a text in double quotes");
    EXPECT_EQ(complaintOf([&] { reader.texts("text"); }), "text: must be a list of texts in square brackets");
    EXPECT_EQ(complaintOf([&] { reader.seconds("text"); }), "text: must be a number of seconds from 0 to 86400");
    EXPECT_EQ(complaintOf([&] { reader.object("text"); }), "text: must be an object in braces");
    EXPECT_EQ(complaintOf([&] { reader.object("object").object("inner").text("x"); }),
        "object.inner: the key \"x\" is missing");
    EXPECT_EQ(complaintOf([&] { reader.word("text", {"a", "b", "c"}, "a"); }),
        R"(text: "t" is not known; it must be "a", "b" or "c")");
}

TEST_F(Reader, WholeNumbersOnly)
{
    const boost::json::value numbers = parseJson(R"({"half": 1.5, "huge": 18446744073709551615, "one": 1.0})");
    JsonReader other(numbers, "");
    EXPECT_NE(complaintOf([&] { other.number("half", {0, 9}); }), "");
    EXPECT_NE(complaintOf([&] { other.number("huge", {0, INT64_MAX}); }), "");
    EXPECT_NE(complaintOf([&] { other.number("one", {0, 9}); }), "");
}

TEST_F(Reader, FindsTheMemberThatNobodyAskedFor)
{
    for (const std::string key : {"text", "flag", "number", "list", "object", "null"})
        reader.find(key);
    EXPECT_EQ(complaintOf([&] { reader.refuseUnread(); }), "\"A B\": is not a key that is known here");
    reader.find("A B");
    EXPECT_EQ(complaintOf([&] { reader.refuseUnread(); }), "");
}

} // namespace

} // namespace veranox
