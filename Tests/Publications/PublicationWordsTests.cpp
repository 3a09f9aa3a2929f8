#include "API/Records/VeranoxPublication.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using Kind = VeranoxStatusBadge::Kind;

namespace {

VeranoxPublication publication(const QString &state, const QString &reachability = {}, bool disabled = false)
{
    return {.disabled = disabled, .state = state, .reachability = {.state = reachability}};
}

VeranoxPublication failing(const QString &state, const QString &error, bool disabled = false)
{
    return {.disabled = disabled, .state = state, .lastError = error};
}

VeranoxPublicationReachability reachable(qint64 peers, bool everyone = false)
{
    return {.state = u" reachable "_s, .peers = peers, .everyone = everyone};
}

} // namespace

TEST(VeranoxPublication, ItsStateInAWord)
{
    struct Row {
        VeranoxPublication publication;
        QString title;
        Kind kind;
    };
    const QList<Row> rows{
        {publication(u"blocked"_s), u"Not published"_s, Kind::offline},
        {publication(u"blocked"_s, {}, true), u"Not published"_s, Kind::offline},
        {publication(u" blocked"_s), u" blocked"_s, Kind::offline},
        {publication(u"listening"_s, {}, true), u"Disabled"_s, Kind::offline},
        {publication(u"listening"_s), u"Published"_s, Kind::ok},
        {publication(u" listening\n"_s), u"Published"_s, Kind::ok},
        {publication(u"listening"_s, u" unreachable "_s), u"Unreachable"_s, Kind::warning},
        {publication(u" listening"_s, u"unreachable"_s), u"Published"_s, Kind::ok},
        {publication(u"listening"_s, u"UNREACHABLE"_s), u"Published"_s, Kind::ok},
        {publication(u" starting"_s), u"Starting"_s, Kind::warning},
        {publication(u"error "_s), u"Error"_s, Kind::error},
        {publication(u" "_s), u"Stopped"_s, Kind::offline},
        {publication(u"stopped"_s), u"Stopped"_s, Kind::offline},
        {publication(u"Listening "_s), u"Listening "_s, Kind::offline},
    };
    for (const Row &row : rows)
        EXPECT_EQ(row.publication.stateBadge(), (VeranoxStatusBadge{row.title, row.kind})) << row.title.toStdString();
}

TEST(VeranoxPublication, WhetherItHasAnError)
{
    EXPECT_TRUE(failing(u"error"_s, {}).hasError());
    EXPECT_TRUE(failing(u"error"_s, {}, true).hasError());
    EXPECT_TRUE(failing(u"listening"_s, u" refused "_s).hasError());
    EXPECT_FALSE(failing(u"listening"_s, u" \n"_s).hasError());
    EXPECT_FALSE(failing(u"blocked"_s, u"refused"_s).hasError());
    EXPECT_FALSE(failing(u"Error"_s, {}).hasError());
}

TEST(VeranoxPublication, TheErrorThatIsShown)
{
    EXPECT_EQ(failing(u"listening"_s, u" refused "_s).visibleLastError(), u"refused"_s);
    EXPECT_EQ(failing(u"listening"_s, u" "_s).visibleLastError(), std::nullopt);
    EXPECT_EQ(failing(u"listening"_s, u"refused"_s, true).visibleLastError(), std::nullopt);
    EXPECT_EQ(failing(u"blocked"_s, u"refused"_s).visibleLastError(), std::nullopt);
}

TEST(VeranoxPublication, UnreachableIsUpButOfNoUse)
{
    EXPECT_TRUE(publication(u"listening"_s, u" unreachable "_s).isUnreachable());
    EXPECT_TRUE(publication(u"listening"_s, u"unreachable"_s, true).isUnreachable());
    EXPECT_FALSE(publication(u" listening"_s, u"unreachable"_s).isUnreachable());
    EXPECT_FALSE(publication(u"starting"_s, u"unreachable"_s).isUnreachable());
    EXPECT_FALSE(publication(u"listening"_s, u"reachable"_s).isUnreachable());
}

TEST(VeranoxPublicationReachability, Summaries)
{
    EXPECT_EQ(reachable(7, true).summary(), u"Reachable from every device in the tailnet"_s);
    EXPECT_EQ(reachable(1, true).summary(), u"Reachable from every device in the tailnet"_s);
    EXPECT_EQ(reachable(0).summary(), u"Reachable from 0 devices"_s);
    EXPECT_EQ(reachable(1).summary(), u"Reachable from 1 device"_s);
    EXPECT_EQ(reachable(2).summary(), u"Reachable from 2 devices"_s);
    const auto summary = [](const QString &state) { return VeranoxPublicationReachability{.state = state}.summary(); };
    EXPECT_EQ(summary(u" unreachable"_s), u"No device is allowed to reach it yet"_s);
    EXPECT_EQ(summary(u"unknown\n"_s), u"Reachability unknown"_s);
    EXPECT_EQ(summary(u"REACHABLE"_s), std::nullopt);
    EXPECT_EQ(summary({}), std::nullopt);
}

TEST(VeranoxPublicationReachability, Help)
{
    const auto help = [](const QString &state, const QString &detail = {}) {
        return VeranoxPublicationReachability{.state = state, .detail = detail}.help();
    };
    EXPECT_EQ(help(u" unknown "_s, u" not signed in\n"_s), u"not signed in");
    EXPECT_EQ(help(u"unknown"_s, u" "_s), u"Veranox couldn't tell which devices the tailnet policy lets connect.");
    EXPECT_EQ(help(u"unreachable"_s, u"why"_s),
        u"Unreachable — the tailnet's access policy lets no device connect to this publication.");
    EXPECT_EQ(help(u"other"_s, u"why"_s), u"");
    EXPECT_EQ(reachable(2).help(), u"Reachable from 2 devices");
}

TEST(VeranoxPublicationPolicyHint, OpensOnlySecureAddresses)
{
    const auto url = [](const QString &text) {
        return VeranoxPublicationPolicyHint{.policyURLString = text}.policyURL();
    };
    EXPECT_EQ(url(u" HTTPS://admin.example/acls \n"_s), QUrl(u"https://admin.example/acls"_s));
    for (const QString &refused : {u""_s, u"  "_s, u"http://admin.example"_s, u"https:///x"_s, u"https:x"_s,
             u"admin.example"_s, u"file:///etc/passwd"_s, u"javascript:alert(1)"_s, u"https://a b/"_s})
        EXPECT_EQ(url(refused), std::nullopt) << refused.toStdString();
}

TEST(VeranoxPublicationPolicyHint, ShowsSnippetsOnlyTogether)
{
    const auto shows = [](const QString &hosts, const QString &grant) {
        return VeranoxPublicationPolicyHint{.hostsEntry = hosts, .grant = grant}.hasSnippets();
    };
    EXPECT_TRUE(shows(u"h"_s, u"g"_s));
    EXPECT_FALSE(shows(u"h"_s, u" "_s));
    EXPECT_FALSE(shows(u"\n"_s, u"g"_s));
}
