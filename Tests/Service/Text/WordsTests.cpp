#include "Service/Text/Timestamps.h"
#include "Service/Text/Visible.h"
#include "Service/Text/Words.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

TEST(Words, Names)
{
    for (const std::string name : {"a", "9lives", "a_b-c", "work"})
        EXPECT_TRUE(isValidName(name)) << name;
    EXPECT_TRUE(isValidName(std::string(63, 'a')));
    EXPECT_FALSE(isValidName(std::string(64, 'a')));
    for (const std::string name : {"", "-x", "_x", "A", "a b", "a.b", "ä", "a/b"})
        EXPECT_FALSE(isValidName(name)) << name;
}

TEST(Words, PrintableKeepsText)
{
    EXPECT_EQ(printable("a b=ü€😀"), "a b=ü€😀");
}

TEST(Words, PrintableTamesControlsAndExoticBlanks)
{
    EXPECT_EQ(printable("a\nb\r\x1b[0m\x7f"), "a b  [0m ");
    EXPECT_EQ(printable("\u0085\u00a0\u2028\u2029\u3000\ufeff\u202e"), "       ");
    EXPECT_EQ(printable(std::string_view("\0", 1)), " ");
}

TEST(Words, PrintableReplacesBytesThatAreNoText)
{
    EXPECT_EQ(printable("\xff"), "?");
    EXPECT_EQ(printable("\xc3"), "?") << "cut short";
    EXPECT_EQ(printable("\xc0\xaf"), "??") << "overlong";
    EXPECT_EQ(printable("\xed\xa0\x80"), "???") << "a surrogate";
    EXPECT_EQ(printable("\xf4\x90\x80\x80"), "????") << "beyond Unicode";
    EXPECT_EQ(printable("\xe2\x82z"), "??z");
}

TEST(Words, Utf8IsToldFromOtherBytes)
{
    const std::string_view zero("a\0b", 3);
    for (const std::string_view text :
        {std::string_view(), std::string_view("a b\n\x7f"), std::string_view("ü€😀\u202e"), zero}) {
        EXPECT_TRUE(isUtf8(text)) << text;
        EXPECT_EQ(toUtf8(text), text);
    }
    for (const std::string_view text : {"\xff", "a\xc3", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82z"})
        EXPECT_FALSE(isUtf8(text)) << text;
}

TEST(Words, ToUtf8ReplacesEachByteThatIsNoText)
{
    EXPECT_EQ(toUtf8("a\xffz"), "a\uFFFDz");
    EXPECT_EQ(toUtf8("\xc3"), "\uFFFD") << "cut short";
    EXPECT_EQ(toUtf8("\xed\xa0\x80ü"), "\uFFFD\uFFFD\uFFFDü") << "a surrogate";
    EXPECT_EQ(toUtf8("\xe2\x82\"}"), "\uFFFD\uFFFD\"}") << "what follows stays";
}

TEST(Visible, HoldsWhenEveryCharacterShows)
{
    for (const std::string text : {"", "a.b-c_d", "é", "नमस्ते", "例え", "😀"})
        EXPECT_TRUE(isVisible(text)) << text;
    for (const std::string text :
        {" ", "a\tb", "\x7f", "a\u00ADb", "\u200B", "\uFE0F", "\u2800", "\u0378", "\xff", "a\xc3"})
        EXPECT_FALSE(isVisible(text)) << text;
    EXPECT_FALSE(isVisible(std::string_view("\0", 1)));
}

TEST(Words, ShortenedCutsBetweenCharacters)
{
    EXPECT_EQ(shortened("abcdef", 6), "abcdef");
    EXPECT_EQ(shortened("abcdefg", 6), "abc…");
    EXPECT_EQ(shortened("aüüüü", 7), "aü…");
    EXPECT_EQ(shortened("aüüüü", 6), "aü…");
    EXPECT_EQ(shortened("aüüüü", 5), "a…");
}

TEST(Timestamps, AreInUTC)
{
    using namespace std::chrono;
    const sys_time<milliseconds> time = sys_days(year(2025) / March / 1) + 8h + 15min + 30s + 7ms;
    EXPECT_EQ(timestamp(time), "2025-03-01T08:15:30.007Z");
    EXPECT_EQ(fileTimestamp(time), "20250301T081530Z");
}

} // namespace

} // namespace veranox
