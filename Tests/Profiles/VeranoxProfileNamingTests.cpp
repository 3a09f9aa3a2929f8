#include "Profiles/VeranoxProfileNaming.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

std::optional<VeranoxEditableConfig> documentWith(const QStringList &names)
{
    VeranoxEditableConfig document;
    for (const QString &name : names)
        document.profiles.insert(name, {});
    return document;
}

} // namespace

TEST(VeranoxProfileNaming, TheNextIndexIsFree)
{
    EXPECT_EQ(nextProfileIndex(documentWith({}), 5), 1);
    EXPECT_EQ(nextProfileIndex(documentWith({u"a"_s, u"b"_s}), 0), 3);
    EXPECT_EQ(nextProfileIndex(documentWith({u"tailnet1"_s, u"tailnet3"_s}), 0), 4);
    EXPECT_EQ(nextProfileIndex(documentWith({u"tailnet3"_s, u"tailnet4"_s}), 0), 5);
}

TEST(VeranoxProfileNaming, WithoutADocumentTheReportedProfilesCount)
{
    EXPECT_EQ(nextProfileIndex(std::nullopt, 0), 1);
    EXPECT_EQ(nextProfileIndex(std::nullopt, 4), 5);
}

TEST(VeranoxProfileNaming, FindsTheProfileThatALineNames)
{
    const QStringList names{u"work"_s, u"Home"_s, u"acme"_s, u"work"_s};
    const auto inferred = [&](const QString &line) { return inferredProfileName(line, names); };
    EXPECT_EQ(inferred(u"[WORK] up"_s), u"work"_s);
    EXPECT_EQ(inferred(u"profile=work"_s), u"work"_s);
    EXPECT_EQ(inferred(u"profile=\"home\""_s), u"Home"_s);
    EXPECT_EQ(inferred(u"started home"_s), u"Home"_s);
    EXPECT_EQ(inferred(u"acme.example.ts.net"_s), u"acme"_s);
    EXPECT_EQ(inferred(u"work: nothing"_s), std::nullopt);
    EXPECT_EQ(inferred(u""_s), std::nullopt);
}

TEST(VeranoxProfileNaming, TheFirstInAscendingOrderCounts)
{
    EXPECT_EQ(inferredProfileName(u"[b] [a]"_s, {u"b"_s, u"a"_s}), u"a"_s);
    EXPECT_EQ(inferredProfileName(u"[a] [B]"_s, {u"a"_s, u"B"_s}), u"B"_s);
    EXPECT_EQ(inferredProfileName(u"[a]"_s, {}), std::nullopt);
}
