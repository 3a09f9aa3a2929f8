#include "Service/Routing/RouteTable.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

RouteTable tableOf(NamedList<ProfileSettings> profiles)
{
    ConfigDocument document;
    document.profiles = std::move(profiles);
    return RouteTable(std::make_shared<ConfigDocument>(std::move(document)));
}

ProfileSettings profileWith(std::vector<std::string> suffixes, std::vector<std::string> ranges, bool matchRoot = false)
{
    ProfileSettings profile;
    profile.suffixes = std::move(suffixes);
    profile.ipRoutes = std::move(ranges);
    profile.matchRoot = matchRoot;
    return profile;
}

TEST(RouteTable, LongestSuffixAndNarrowestRangeWin)
{
    const ProfileSettings wide = profileWith({".net"}, {"10.0.0.0/8"});
    const ProfileSettings narrow = profileWith({"a.net"}, {"10.1.0.0/16", "nonsense", "fd00::/8"}, true);
    const RouteTable table = tableOf({{"wide", wide}, {"narrow", narrow}});
    EXPECT_EQ(table.find("x.a.net")->profile, 1U);
    EXPECT_EQ(table.find("a.net")->profile, 1U) << "the root of a suffix, where the profile takes it";
    EXPECT_EQ(table.find("xa.net")->profile, 0U);
    EXPECT_EQ(table.find("net"), std::nullopt);
    EXPECT_EQ(table.find("10.1.2.3")->ipRoute, "10.1.0.0/16");
    EXPECT_EQ(table.find("10.2.2.3")->ipRoute, "10.0.0.0/8");
    EXPECT_EQ(table.find("fd00::1")->profile, 1U);
    EXPECT_EQ(table.find("192.168.0.1"), std::nullopt);
    const RouteTable more = tableOf({{"wide", wide}, {"narrow", narrow}, {"late", narrow}});
    EXPECT_EQ(more.find("x.a.net")->profile, 1U) << "of equals the first";
    EXPECT_EQ(more.find("10.1.2.3")->profile, 1U);
}

TEST(RouteTable, CapitalLettersAndAFullStopAtTheEndMakeNoDifference)
{
    const RouteTable table = tableOf({{"p", profileWith({".Tail1.TS.net"}, {"10.1.2.3"})}});
    EXPECT_EQ(table.find("Wiki.tail1.ts.NET."), (PathRoute{0, ".tail1.ts.net", ""}));
    EXPECT_EQ(table.find("10.1.2.3."), (PathRoute{0, "", "10.1.2.3"}));
    EXPECT_EQ(table.find("wiki.tail1.ts.net.."), std::nullopt);
    EXPECT_EQ(table.find(""), std::nullopt);
}

TEST(RouteTable, ARuleOfTheWholeNetworkAndASingleAddress)
{
    const RouteTable table =
        tableOf({{"all", profileWith({}, {"0.0.0.0/0", "::/0"})}, {"one", profileWith({}, {"10.0.0.1", "fd00::1"})}});
    EXPECT_EQ(table.find("10.0.0.1")->profile, 1U);
    EXPECT_EQ(table.find("10.0.0.2")->profile, 0U);
    EXPECT_EQ(table.find("fd00::1")->profile, 1U);
    EXPECT_EQ(table.find("fd00::2")->profile, 0U);
}

TEST(RouteTable, ASuffixOfAMillionLabelsIsOneOfMany)
{
    std::string deep;
    for (int i = 0; i < 1'000'000; ++i)
        deep += ".a";
    const RouteTable table = tableOf({{"deep", profileWith({deep}, {})}, {"flat", profileWith({".a"}, {})}});
    EXPECT_EQ(table.find("x" + deep)->profile, 0U);
    EXPECT_EQ(table.find("x.a")->profile, 1U);
}

} // namespace

} // namespace veranox
