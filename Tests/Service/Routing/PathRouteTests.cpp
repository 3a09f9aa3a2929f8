#include "Service/Routing/PathRoute.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

TEST(PathRoute, LongestSuffixAndNarrowestRangeWin)
{
    ConfigDocument document;
    ProfileSettings wide;
    wide.suffixes = {".net"};
    wide.ipRoutes = {"10.0.0.0/8"};
    ProfileSettings narrow;
    narrow.suffixes = {"a.net"};
    narrow.ipRoutes = {"10.1.0.0/16", "nonsense", "fd00::/8"};
    narrow.matchRoot = true;
    document.profiles = {{"wide", wide}, {"narrow", narrow}};
    EXPECT_EQ(findRoute(document, "x.a.net")->profile, 1U);
    EXPECT_EQ(findRoute(document, "a.net")->profile, 1U) << "the root of a suffix, where the profile takes it";
    EXPECT_EQ(findRoute(document, "xa.net")->profile, 0U);
    EXPECT_EQ(findRoute(document, "net"), std::nullopt);
    EXPECT_EQ(findRoute(document, "10.1.2.3")->ipRoute, "10.1.0.0/16");
    EXPECT_EQ(findRoute(document, "10.2.2.3")->ipRoute, "10.0.0.0/8");
    EXPECT_EQ(findRoute(document, "fd00::1")->profile, 1U);
    EXPECT_EQ(findRoute(document, "192.168.0.1"), std::nullopt);
    document.profiles.emplace_back("late", narrow);
    EXPECT_EQ(findRoute(document, "x.a.net")->profile, 1U) << "of equals the first";
    EXPECT_EQ(findRoute(document, "10.1.2.3")->profile, 1U);
}

} // namespace

} // namespace veranox
