#include "Tests/Support/QtPrinters.h"
#include "Tunnels/VeranoxTunnelErrorMessage.h"
#include "Tunnels/VeranoxTunnelOverview.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

VeranoxTunnel tunnel(const QString &state, const QString &lastError = {}, bool disabled = false)
{
    return {.disabled = disabled, .state = state, .lastError = lastError};
}

QString message(const VeranoxAPIFailure &failure)
{
    return VeranoxTunnelErrorMessage::message(failure, u"Not running."_s);
}

} // namespace

TEST(VeranoxTunnelOverview, Counts)
{
    const VeranoxTunnelOverview overview({
        tunnel(u"listening"_s),
        tunnel(u"error"_s),
        tunnel(u"listening"_s, u" "_s), // not trimmed: a blank is an error, too
        tunnel(u"Error"_s),
        tunnel(u"error"_s, u"refused"_s, true),
        tunnel(u"stopped"_s, {}, true),
    });
    EXPECT_EQ(overview.totalCount, 6);
    EXPECT_EQ(overview.enabledCount, 4);
    EXPECT_EQ(overview.disabledCount, 2);
    EXPECT_EQ(overview.attentionCount, 2);
    EXPECT_EQ(overview.statusSummary(), u"4 enabled · 2 off");
    EXPECT_EQ(VeranoxTunnelOverview(QList<VeranoxTunnel>{}), VeranoxTunnelOverview());
    EXPECT_EQ(VeranoxTunnelOverview().statusSummary(), u"0 enabled · 0 off");
}

TEST(VeranoxTunnelOverview, AttentionInWords)
{
    QList<VeranoxTunnel> tunnels;
    EXPECT_EQ(VeranoxTunnelOverview(tunnels).attentionSummary(), std::nullopt);
    tunnels.append(tunnel(u"error"_s));
    EXPECT_EQ(VeranoxTunnelOverview(tunnels).attentionSummary(), u"1 needs attention"_s);
    tunnels.append(tunnel(u"listening"_s, u"refused"_s));
    EXPECT_EQ(VeranoxTunnelOverview(tunnels).attentionSummary(), u"2 need attention"_s);
}

TEST(VeranoxTunnelErrorMessage, OfTheServicesWords)
{
    const QString exists = u"A tunnel with that name already exists. Choose a different name."_s;
    const QString removed =
        u"This tunnel no longer exists — it was removed while you were editing it. Close the editor "
        "and create it again."_s;
    const QString changed = u"That tunnel no longer exists — it was changed or removed elsewhere."_s;
    struct Row {
        QString text;
        QString sentence;
    };
    const QList<Row> rows{
        {u"tunnel \"a\" already exists"_s, exists},
        {u"Tunnel ALREADY EXISTS"_s, exists},
        {u"tunnel \"a\" does not exist"_s, removed},
        {u"tunnel \"a\" is not configured"_s, changed},
        // What matches two rows is the earlier one's.
        {u"does not exist; b already exists"_s, exists},
        {u"is not configured and does not exist"_s, removed},
        {u"is not configured, already exists"_s, exists},
        // Anything else is shown as the service put it, up to the first line's end.
        {u" \n\n bind: refused \nmore"_s, u"bind: refused "_s},
        {u"one\r\ntwo"_s, u"one\r"_s},
        {u"\n"_s, u""_s},
        {u""_s, u""_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ(VeranoxTunnelErrorMessage::messageForServerError(row.text), row.sentence) << row.text.toStdString();
}

TEST(VeranoxTunnelErrorMessage, OfAnyFailure)
{
    const QString unreadable =
        u"Veranox couldn't read the response from its local service. Restart Veranox and try again."_s;
    EXPECT_EQ(message(VeranoxAPIFailure::unavailable()), u"Not running.");
    EXPECT_EQ(message(VeranoxAPIFailure::refused(u"tunnel exists\nmore"_s, 409)), u"tunnel exists");
    EXPECT_EQ(message(VeranoxAPIFailure::undecodable(u"It is no list."_s)), unreadable);
    EXPECT_EQ(message(VeranoxAPIFailure::badResponse()), unreadable);
}
