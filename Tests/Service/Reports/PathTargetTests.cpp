#include "Service/Reports/PathTarget.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

TEST(PathTarget, IsTakenApart)
{
    EXPECT_EQ(parsePathTarget("Wiki.Net."), (PathTarget{"", "wiki.net", 80, "/"}));
    EXPECT_EQ(parsePathTarget("https://u@a.net/x?y#z"), (PathTarget{"https", "a.net", 443, "/x?y"}));
    EXPECT_EQ(parsePathTarget("http://a.net:8080?y"), (PathTarget{"http", "a.net", 8080, "/?y"}));
    EXPECT_EQ(parsePathTarget("a.net:22"), (PathTarget{"", "a.net", 22, "/"}));
    EXPECT_EQ(parsePathTarget("fd00::1"), (PathTarget{"", "fd00::1", 80, "/"}));
    EXPECT_EQ(parsePathTarget("http://[fd00::1]:81/"), (PathTarget{"http", "fd00::1", 81, "/"}));
    for (const std::string bad : {"", "http://", "a b", ":80", "a:0", "a:99999", "http:///x"})
        EXPECT_EQ(parsePathTarget(bad), std::nullopt) << bad;
}

TEST(PathTarget, WhatMayNotStandInARequestIsEscaped)
{
    const std::vector<std::pair<std::string, std::string>> cases{{"http://a/b c", "/b%20c"},
        {"http://a/b\\c", "/b%5Cc"}, {"http://a/x HTTP/1.1\r\nEvil: yes", "/x%20HTTP/1.1%0D%0AEvil:%20yes"},
        {"http://a/%41%zz%4", "/%41%25zz%254"}, {"http://a?q=\"<>{}|^`\"", "/?q=%22%3C%3E%7B%7D%7C%5E%60%22"},
        {"http://a/gr\xc3\xbc\xc3\x9f", "/gr%C3%BC%C3%9F"},
        {"http://a/b;c=1,2@d:e!$&'()*+-._~?f/g?h", "/b;c=1,2@d:e!$&'()*+-._~?f/g?h"}, {"a/\x7f", "/%7F"}};
    for (const auto &[text, path] : cases) {
        const std::optional<PathTarget> target = parsePathTarget(text);
        ASSERT_TRUE(target) << text;
        EXPECT_EQ(target->path, path) << text;
    }
}

TEST(PathTarget, BlanksAndBackslashesInAHostAreNoHost)
{
    for (const std::string bad : {"http://a b/", "http://a\\b/", "http://a\r\nb/", "a\\b:80", "http://a:80 /x"})
        EXPECT_EQ(parsePathTarget(bad), std::nullopt) << bad;
}

TEST(PathTarget, PortIsThatOfTheScheme)
{
    const std::vector<std::pair<std::string, std::uint16_t>> cases{{"http://a", 80}, {"HTTPS://a", 443}, {"ws://a", 80},
        {"wss://a", 443}, {"ssh://a", 22}, {"ftp://a", 21}, {"postgres://a/db", 5432}, {"unknown://a", 80},
        {"ssh://a:2222", 2222}};
    for (const auto &[text, port] : cases)
        EXPECT_EQ(parsePathTarget(text).value_or(PathTarget{}).port, port) << text;
}

TEST(PathTarget, HostFieldNamesAPortThatIsNotTheUsualOne)
{
    const std::vector<std::pair<std::string, std::string>> cases{{"http://a", "a"}, {"http://a:80", "a"},
        {"http://a:8080", "a:8080"}, {"https://a", "a"}, {"https://a:80", "a:80"}, {"http://a:443", "a:443"},
        {"a:7", "a:7"}, {"http://[fd00::1]/", "[fd00::1]"}, {"http://[fd00::1]:81/", "[fd00::1]:81"}};
    for (const auto &[text, field] : cases)
        EXPECT_EQ(hostField(parsePathTarget(text).value()), field) << text;
}

} // namespace

} // namespace veranox
