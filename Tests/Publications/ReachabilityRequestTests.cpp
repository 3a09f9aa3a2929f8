#include "Publications/VeranoxReachabilityRequest.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(VeranoxReachabilityRequest, OfAPublicationWithAHint)
{
    VeranoxPublication record;
    record.name = u"web"_s;
    EXPECT_EQ(VeranoxReachabilityRequest::of(record), std::nullopt);
    record.reachability.hint = VeranoxPublicationPolicyHint{.hostsEntry = u"\"node\": \"100.64.0.1\""_s};
    const auto unnamed = VeranoxReachabilityRequest::of(record);
    ASSERT_TRUE(unnamed) << "a hint without a grant opens the sheet, too";
    EXPECT_EQ(unnamed->id, u"web");
    EXPECT_EQ(unnamed->title, u"web");
    EXPECT_EQ(unnamed->hint, record.reachability.hint);
    record.displayName = u"Site"_s;
    EXPECT_EQ(VeranoxReachabilityRequest::of(record)->title, u"Site");
}
