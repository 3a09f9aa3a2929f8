#include "Service/Net/HostPort.h"
#include "Service/Text/FieldText.h"
#include <gtest/gtest.h>
#include <stdexcept>

namespace veranox {

namespace {

TEST(HostPort, IsTakenApart)
{
    const std::string longest(253, 'a');
    const std::pair<std::string, HostPort> cases[] = {{"db:1", {"db", 1}}, {"a_b-c.d:65535", {"a_b-c.d", 65535}},
        {"10.0.0.1:80", {"10.0.0.1", 80}}, {"[fd00::1]:22", {"fd00::1", 22}},
        {"bücher.example:80", {"bücher.example", 80}}, {longest + ":80", {longest, 80}}};
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(parseHostPort(text).host, expected.host) << text;
        EXPECT_EQ(parseHostPort(text).port, expected.port) << text;
    }
}

TEST(HostPort, AnythingElseIsNone)
{
    for (const std::string &text : {std::string(), std::string("db"), std::string(":80"), std::string("db:"),
             std::string("db:0"), std::string("db:65536"), std::string("db:8x"), std::string("db:+8"),
             std::string("-db:80"), std::string("d b:80"), std::string("fd00::1:80"), std::string("[fd00::1]"),
             std::string("[fd00::1%lo]:80"), std::string("[db]:80"), std::string(254, 'a') + ":80"})
        EXPECT_THROW(parseHostPort(text), std::invalid_argument) << text;
}

TEST(HostPort, LoopbackIsThisComputer)
{
    for (const std::string_view host : {"localhost", "LOCALHOST", "127.0.0.1", "127.9.9.9", "::1"})
        EXPECT_TRUE(isLoopbackHost(host)) << host;
    for (const std::string_view host : {"", "localhost.example", "10.0.0.1", "0.0.0.0", "::", "fd00::1"})
        EXPECT_FALSE(isLoopbackHost(host)) << host;
}

TEST(FieldText, LinesHaveAnEnd)
{
    EXPECT_EQ(lineProblem("", 0), std::nullopt);
    EXPECT_EQ(lineProblem("abc ü", 6), std::nullopt);
    EXPECT_EQ(lineProblem("abc ü", 5), "has more than 5 bytes");
    for (const std::string_view text : {"a\nb", "a\tb", "\x1f", "\x7f", "\r"})
        EXPECT_EQ(lineProblem(text, 10), "holds a control character") << text;
}

} // namespace

} // namespace veranox
