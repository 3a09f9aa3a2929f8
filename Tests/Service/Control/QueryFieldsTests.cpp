#include "Service/Control/QueryFields.h"

#include "Service/Text/Refusal.h"
#include <gtest/gtest.h>

namespace veranox {

namespace {

std::string refusalOf(std::string_view query, const std::function<void(const QueryFields &)> &read)
{
    try {
        read(QueryFields(query));
    } catch (const Refusal &refusal) {
        EXPECT_EQ(refusal.kind, Refusal::Kind::badInput);
        return refusal.what();
    }
    return "none";
}

TEST(QueryFields, AreTakenApart)
{
    const QueryFields fields("target=https%3A%2F%2Fa.b%2Fc?d=e+f&stray&=x&&netcheck=true&ping_count=3");
    EXPECT_EQ(fields.text("target"), "https://a.b/c?d=e+f");
    EXPECT_EQ(fields.text("stray"), "");
    EXPECT_EQ(fields.text(""), "x");
    EXPECT_EQ(fields.text("absent"), std::nullopt);
    EXPECT_TRUE(fields.flag("netcheck", false));
    EXPECT_TRUE(fields.flag("absent", true));
    EXPECT_EQ(fields.number("ping_count", {0, 10}, 1), 3);
    EXPECT_EQ(fields.number("absent", {0, 10}, 1), 1);
}

TEST(QueryFields, RefusalsNameTheKey)
{
    const auto nothing = [](const QueryFields &) { };
    const auto force = [](const QueryFields &fields) { fields.flag("force", false); };
    const auto count = [](const QueryFields &fields) { fields.number("n", {0, 10}, 1); };
    for (const std::string_view query : {"a=%", "a=%4", "a=%zz", "%00=1", "%"})
        EXPECT_EQ(refusalOf(query, nothing), "The query of the request is not well formed.") << query;
    for (const std::string_view query : {"force", "force=", "force=1", "force=TRUE"})
        EXPECT_EQ(refusalOf(query, force), "The value of force must be true or false.") << query;
    EXPECT_EQ(refusalOf("force=true&force=true", force), "The key force stands twice in the query.");
    for (const std::string_view query : {"n=", "n=11", "n=-1", "n=3x", "n=99999999999999999999"})
        EXPECT_EQ(refusalOf(query, count), "The value of n must be a whole number from 0 to 10.") << query;
}

} // namespace

} // namespace veranox
