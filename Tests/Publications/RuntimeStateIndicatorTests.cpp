#include "API/Values/VeranoxRuntimeStateIndicator.h"
#include "Publications/VeranoxReachabilityRequest.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using Indicator = VeranoxRuntimeStateIndicator;
using Mark = Indicator::Mark;
using Color = Indicator::Color;

namespace {

VeranoxPublication publication(const QString &state, bool disabled = false, const QString &lastError = {},
    qint64 connections = 0, const QString &reachability = {})
{
    return {.disabled = disabled,
        .state = state,
        .activeConns = connections,
        .lastError = lastError,
        .reachability = {.state = reachability}};
}

VeranoxTunnel tunnel(const QString &state, bool disabled = false, const QString &lastError = {}, qint64 connections = 0)
{
    return {.disabled = disabled, .state = state, .activeConns = connections, .lastError = lastError};
}

const QString unreachable = u"Unreachable — the tailnet's access policy lets no device connect"_s;
const QString blocked = u"Blocked — publishing to the public internet with Funnel isn't available in this version."_s;

} // namespace

TEST(VeranoxRuntimeStateIndicator, OfPublications)
{
    struct Row {
        VeranoxPublication publication;
        Mark mark;
        Color color;
        QString help;
    };
    const QList<Row> rows{
        {publication(u"blocked"_s), Mark::blocked, Color::secondary, blocked},
        {publication(u"blocked"_s, true, u"refused"_s), Mark::blocked, Color::faint, blocked},
        {publication(u"starting"_s, true), Mark::dot, Color::faint, u"Stopped"_s},
        {publication(u"starting"_s, false, u"refused"_s), Mark::spinner, Color::secondary,
            u"Starting — waiting for the profile's tailnet…"_s},
        {publication(u"listening"_s, true, u"refused"_s), Mark::dot, Color::faint, u"Stopped"_s},
        {publication(u"listening"_s), Mark::dot, Color::green, u"Listening"_s},
        {publication(u"listening"_s, false, {}, -1), Mark::dot, Color::green, u"Listening"_s},
        {publication(u"listening"_s, false, {}, 1), Mark::dot, Color::green, u"Listening — 1 active connection"_s},
        {publication(u"listening"_s, false, {}, 2), Mark::dot, Color::green, u"Listening — 2 active connections"_s},
        {publication(u"listening"_s, false, {}, 2, u" unreachable "_s), Mark::dot, Color::orange, unreachable},
        {publication(u"listening"_s, false, u" "_s, 2, u"unreachable"_s), Mark::dot, Color::orange, u" "_s},
        {publication(u"listening"_s, false, u"refused"_s), Mark::dot, Color::orange, u"refused"_s},
        {publication(u"error"_s), Mark::dot, Color::red, u"Error"_s},
        {publication(u"error"_s, false, u"refused"_s), Mark::dot, Color::red, u"refused"_s},
        {publication(u"error"_s, false, {}, 0, u"unreachable"_s), Mark::dot, Color::red, u"Error"_s},
        {publication(u"stopped"_s), Mark::dot, Color::secondary, u"Stopped"_s},
        {publication(u""_s), Mark::dot, Color::secondary, u"Stopped"_s},
        {publication(u"Listening"_s), Mark::dot, Color::secondary, u"Stopped"_s},
        {publication(u" starting"_s), Mark::dot, Color::secondary, u"Stopped"_s},
    };
    for (const Row &row : rows) {
        const Indicator indicator(row.publication);
        EXPECT_EQ(indicator.mark(), row.mark) << row.help.toStdString();
        EXPECT_EQ(indicator.color(), row.color) << row.help.toStdString();
        EXPECT_EQ(indicator.help(), row.help);
    }
}

TEST(VeranoxRuntimeStateIndicator, OfTunnels)
{
    EXPECT_EQ(Indicator(tunnel(u"starting"_s)).help(), u"Starting — connecting through the profile…");
    EXPECT_EQ(Indicator(tunnel(u"starting"_s)).mark(), Mark::spinner);
    EXPECT_EQ(Indicator(tunnel(u"blocked"_s, true)).help(), u"Blocked");
    EXPECT_EQ(Indicator(tunnel(u"blocked"_s)).mark(), Mark::blocked);
    EXPECT_EQ(Indicator(tunnel(u"listening"_s, false, {}, 3)).help(), u"Listening — 3 active connections");
    EXPECT_EQ(Indicator(tunnel(u"listening"_s, false, u" "_s)).color(), Color::orange) << "not trimmed";
    EXPECT_EQ(Indicator(tunnel(u"listening"_s)).color(), Color::green);
    EXPECT_FALSE(Indicator(tunnel(u"listening"_s)).unreachable);
    EXPECT_EQ(Indicator(tunnel(u"error"_s)).color(), Color::red);
}

TEST(VeranoxRuntimeStateIndicator, TheSameStateIsTheSameMark)
{
    EXPECT_EQ(Indicator(tunnel(u"error"_s)), Indicator(tunnel(u"error"_s)));
    EXPECT_NE(Indicator(tunnel(u"error"_s)), Indicator(publication(u"error"_s)));
    EXPECT_NE(Indicator(tunnel(u"error"_s)), Indicator(tunnel(u"error"_s, false, u"why"_s)));
}

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
