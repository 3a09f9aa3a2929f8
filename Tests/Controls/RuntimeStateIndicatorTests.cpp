#include "Controls/VeranoxRuntimeStateIndicator.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using Indicator = VeranoxRuntimeStateIndicator;
using Mark = Indicator::Mark;

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
        VeranoxTone::Tone color;
        QString help;
    };
    const QList<Row> rows{
        {publication(u"blocked"_s), Mark::blocked, VeranoxTone::Gray, blocked},
        {publication(u"blocked"_s, true, u"refused"_s), Mark::blocked, VeranoxTone::FaintGray, blocked},
        {publication(u"starting"_s, true), Mark::dot, VeranoxTone::FaintGray, u"Stopped"_s},
        {publication(u"starting"_s, false, u"refused"_s), Mark::spinner, VeranoxTone::Gray,
            u"Starting — waiting for the profile's tailnet…"_s},
        {publication(u"listening"_s, true, u"refused"_s), Mark::dot, VeranoxTone::FaintGray, u"Stopped"_s},
        {publication(u"listening"_s), Mark::dot, VeranoxTone::Green, u"Listening"_s},
        {publication(u"listening"_s, false, {}, -1), Mark::dot, VeranoxTone::Green, u"Listening"_s},
        {publication(u"listening"_s, false, {}, 1), Mark::dot, VeranoxTone::Green,
            u"Listening — 1 active connection"_s},
        {publication(u"listening"_s, false, {}, 2), Mark::dot, VeranoxTone::Green,
            u"Listening — 2 active connections"_s},
        {publication(u"listening"_s, false, {}, 2, u" unreachable "_s), Mark::dot, VeranoxTone::Orange, unreachable},
        {publication(u"listening"_s, false, u" "_s, 2, u"unreachable"_s), Mark::dot, VeranoxTone::Orange, u" "_s},
        {publication(u"listening"_s, false, u"refused"_s), Mark::dot, VeranoxTone::Orange, u"refused"_s},
        {publication(u"error"_s), Mark::dot, VeranoxTone::Red, u"Error"_s},
        {publication(u"error"_s, false, u"refused"_s), Mark::dot, VeranoxTone::Red, u"refused"_s},
        {publication(u"error"_s, false, {}, 0, u"unreachable"_s), Mark::dot, VeranoxTone::Red, u"Error"_s},
        {publication(u"stopped"_s), Mark::dot, VeranoxTone::Gray, u"Stopped"_s},
        {publication(u""_s), Mark::dot, VeranoxTone::Gray, u"Stopped"_s},
        {publication(u"Listening"_s), Mark::dot, VeranoxTone::Gray, u"Stopped"_s},
        {publication(u" starting"_s), Mark::dot, VeranoxTone::Gray, u"Stopped"_s},
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
    EXPECT_EQ(Indicator(tunnel(u"listening"_s, false, u" "_s)).color(), VeranoxTone::Orange) << "not trimmed";
    EXPECT_EQ(Indicator(tunnel(u"listening"_s)).color(), VeranoxTone::Green);
    EXPECT_FALSE(Indicator(tunnel(u"listening"_s)).unreachable);
    EXPECT_EQ(Indicator(tunnel(u"error"_s)).color(), VeranoxTone::Red);
}

TEST(VeranoxRuntimeStateIndicator, TheSameStateIsTheSameMark)
{
    EXPECT_EQ(Indicator(tunnel(u"error"_s)), Indicator(tunnel(u"error"_s)));
    EXPECT_NE(Indicator(tunnel(u"error"_s)), Indicator(publication(u"error"_s)));
    EXPECT_NE(Indicator(tunnel(u"error"_s)), Indicator(tunnel(u"error"_s, false, u"why"_s)));
}
