#include "Service/Page/Html.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

TEST(HtmlText, CannotLeaveItsPlace)
{
    EXPECT_EQ(Html().text("</td><script>alert(\"1\" & '2')</script>").string(),
        "&lt;/td&gt;&lt;script&gt;alert(&quot;1&quot; &amp; &#39;2&#39;)&lt;/script&gt;");
    EXPECT_EQ(Html().text("&lt;").string(), "&amp;lt;");
}

TEST(HtmlText, KeepsWhatIsNoMarkup)
{
    EXPECT_EQ(Html().text("Straße – 東京 🚀 100 %").string(), "Straße – 東京 🚀 100 %");
    EXPECT_EQ(Html().text("").string(), "");
}

TEST(HtmlText, HasNoControlNoBrokenUtf8AndNoTurnedWriting)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(Html().text("a\0b\r\nc\x1b[31m"sv).string(), "a b  c [31m");
    EXPECT_EQ(Html().text("\xc3(\xff").string(), "?(?");
    EXPECT_EQ(Html().text("x\u202eexe.txt").string(), "x exe.txt");
}

TEST(HtmlText, OfAnAddressMayBreakBetweenItsParts)
{
    EXPECT_EQ(Html().breakable(".a.b:1").string(), ".a<wbr>.b<wbr>:1");
    EXPECT_EQ(Html().breakable("me@<b>").string(), "me<wbr>@&lt;b&gt;");
    EXPECT_EQ(Html().breakable("").string(), "");
}

TEST(HtmlText, StandsBetweenMarkupInOrder)
{
    Html inner("<b>");
    inner.number(42).add("</b>");
    EXPECT_EQ(std::move(Html("<p>").text("<").add(inner).add("</p>")).take(), "<p>&lt;<b>42</b></p>");
}

} // namespace

} // namespace veranox
