#include "Publications/VeranoxPublicationErrorMessage.h"
#include "Publications/VeranoxPublicationOverview.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

struct Row {
    QString text; // of the service
    QString sentence;
};

const QString started = u"The publication was switched on and saved, but it could not be started: "_s;
const QString exists = u"A publication with that name already exists. Choose a different name."_s;
const QString backend = u"Publications need a profile on the tsnet backend. Switch the profile to tsnet on the "
                        u"Profiles page — it will have "
                        "to sign in again, because the two backends do not share state."_s;
const QString noProfile = u"That profile is no longer in the configuration. Choose an existing profile."_s;
const QString removed =
    u"This publication no longer exists — it was removed while you were editing it. Close the editor and create it "
    "again."_s;
const QString changed = u"That publication no longer exists — it was changed or removed elsewhere."_s;
const QString own =
    u"The target is one of Veranox's own listeners — a tunnel, a proxy, the PAC server or the control API. Publishing "
    "it would let this tailnet relay through Veranox into another one. Point the publication at your own service "
    "instead."_s;
const QString loopback = u"The target must be a loopback address such as 127.0.0.1:8080, so Veranox never forwards "
                         u"tailnet traffic onto your "
                         "local network."_s;
const QString hostPort = u"The target must be host:port, for example 127.0.0.1:8080."_s;
const QString range = u"The tailnet port must be a number between 1 and 65535."_s;
const QString portTaken = u"Another publication already uses that port on this profile. Pick a different port."_s;
const QString reach =
    u"That reach is not one Veranox understands. Publications are reachable from their own tailnet."_s;
const QString field =
    u"Veranox could not save this publication because it contains a field the service does not recognise. Update "
    "Veranox and try again."_s;

void expectSentences(const QList<Row> &rows)
{
    for (const Row &row : rows)
        EXPECT_EQ(VeranoxPublicationErrorMessage::messageForServerError(row.text), row.sentence)
            << row.text.toStdString();
}

VeranoxPublication publication(
    const QString &state, bool disabled = false, const QString &lastError = {}, const QString &reachability = {})
{
    return {.disabled = disabled, .state = state, .lastError = lastError, .reachability = {.state = reachability}};
}

} // namespace

TEST(VeranoxPublicationErrorMessage, EachOfTheServicesWords)
{
    expectSentences({
        {u"start publication: could not be started: bind failed\nmore"_s, started + u"bind failed"_s},
        {u"Publication \"a\" ALREADY exists"_s, exists},
        {u"Publications require the tsnet backend"_s, backend},
        {u"publication \"a\": profile \"x\" is not configured"_s, noProfile},
        {u"publication \"a\" does not exist"_s, removed},
        {u"publication \"a\" is not configured"_s, changed},
        {u"target is Veranox's own listener"_s, own},
        {u"target must be a LOOPBACK address"_s, loopback},
        {u"target must be host:port"_s, hostPort},
        {u"port must be numeric"_s, hostPort},
        {u"target: empty host"_s, hostPort},
        {u"port must be in 1-65535"_s, range},
        {u"duplicate publication endpoint"_s, portTaken},
        {u"unsupported Reach \"x\""_s, reach},
        {u"decoding JSON body: x"_s, field},
        {u"json: unknown field \"X\""_s, field},
        {u" \n\nbind: refused\nmore"_s, u"bind: refused"_s},
        {u" \n "_s, u""_s},
    });
}

TEST(VeranoxPublicationErrorMessage, WhatMatchesTwoRowsIsTheEarlierOnes)
{
    // Each row's words before those of all later rows.
    const QStringList words{u"already exists"_s, u"publications require the tsnet backend"_s,
        u"a profile \"x\" is not configured"_s, u"does not exist"_s, u"is not configured"_s, u"veranox's own"_s,
        u"loopback"_s, u"empty host"_s, u"must be in 1-65535"_s, u"publication endpoint"_s, u"reach"_s,
        u"unknown field"_s};
    const QStringList sentences{
        exists, backend, noProfile, removed, changed, own, loopback, hostPort, range, portTaken, reach, field};
    ASSERT_EQ(words.size(), sentences.size());
    for (qsizetype first = 0; first < words.size(); ++first)
        for (qsizetype second = first; second < words.size(); ++second)
            expectSentences({{words.at(second) + u"; "_s + words.at(first), sentences.at(first)}});
}

TEST(VeranoxPublicationErrorMessage, AStartThatFailed)
{
    expectSentences({
        // Before everything else, but only as the service writes it.
        {u"could not be started: already exists"_s, started + u"already exists"_s},
        {u"COULD NOT BE STARTED: already exists"_s, exists},
        {u"COULD NOT BE STARTED: bind"_s, u"COULD NOT BE STARTED: bind"_s},
        {u"could not be started"_s, u"could not be started"_s},
        {u"could not be started: \n bind failed \n more"_s, started + u"bind failed "_s},
        {u"could not be started: "_s, started},
        {u"could not be started: could not be started: x"_s, started + u"could not be started: x"_s},
    });
}

TEST(VeranoxPublicationErrorMessage, TheMissingProfileNeedsBothOfItsWords)
{
    expectSentences({
        {u"the profile \"x\" is broken"_s, u"the profile \"x\" is broken"_s},
        {u"profile \"x\" is not configured"_s, changed}, // no blank before the word
        {u"a profile x is not configured"_s, changed},
        {u"is not configured: a Profile \"x\""_s, noProfile},
    });
}

TEST(VeranoxPublicationErrorMessage, OfAnyFailure)
{
    const auto message = [](const VeranoxAPIFailure &failure) {
        return VeranoxPublicationErrorMessage::message(failure, u"Not running."_s);
    };
    EXPECT_EQ(message(VeranoxAPIFailure::unavailable()), u"Not running.");
    EXPECT_EQ(message(VeranoxAPIFailure::refused(u"publication already exists"_s, 409)), exists);
    EXPECT_EQ(message(VeranoxAPIFailure::undecodable(u"It is no list."_s)),
        u"Veranox couldn't read the response from its local service. Restart Veranox and try again.");
}

TEST(VeranoxPublicationOverview, Counts)
{
    const VeranoxPublicationOverview overview({
        publication(u"listening"_s),
        publication(u"listening"_s, false, u" \n"_s),
        publication(u"listening"_s, false, u"refused"_s),
        publication(u"error"_s),
        publication(u"error"_s, true, u"refused"_s),
        publication(u"blocked"_s, true, u"refused"_s),
        publication(u"blocked"_s, false, u"refused"_s),
        publication(u"listening"_s, true, {}, u" unreachable "_s),
        publication(u"starting"_s, false, {}, u"unreachable"_s),
    });
    EXPECT_EQ(overview.totalCount, 9);
    EXPECT_EQ(overview.blockedCount, 2);
    EXPECT_EQ(overview.disabledCount, 2);
    EXPECT_EQ(overview.enabledCount, 5);
    EXPECT_EQ(overview.attentionCount, 2);
    EXPECT_EQ(overview.unreachableCount, 1);
    EXPECT_EQ(overview.statusSummary(), u"5 enabled · 2 off");
    EXPECT_EQ(overview.attentionSummary(), u"2 need attention"_s);
    EXPECT_EQ(overview.blockedSummary(), u"2 blocked — Funnel isn't available in this version"_s);
    EXPECT_EQ(overview.unreachableSummary(), u"1 unreachable — the tailnet policy admits no device"_s);
}

TEST(VeranoxPublicationOverview, NothingToSayOfNone)
{
    const VeranoxPublicationOverview overview(QList<VeranoxPublication>{});
    EXPECT_EQ(overview, VeranoxPublicationOverview());
    EXPECT_EQ(overview.statusSummary(), u"0 enabled · 0 off");
    EXPECT_EQ(overview.attentionSummary(), std::nullopt);
    EXPECT_EQ(overview.blockedSummary(), std::nullopt);
    EXPECT_EQ(overview.unreachableSummary(), std::nullopt);
    EXPECT_EQ(VeranoxPublicationOverview({publication(u"error"_s)}).attentionSummary(), u"1 needs attention"_s);
}
