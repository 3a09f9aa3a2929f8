#include "Publications/VeranoxPublicationActionResult.h"
#include "Tests/Publications/PublicationDrafts.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>
#include <random>

using namespace Qt::StringLiterals;
using namespace publication_drafts;

TEST(VeranoxPublicationReach, WordsAndOrder)
{
    ASSERT_EQ(allVeranoxPublicationReaches.size(), 2U);
    EXPECT_EQ(rawValue(allVeranoxPublicationReaches[0]), u"tailnet");
    EXPECT_EQ(rawValue(allVeranoxPublicationReaches[1]), u"funnel");
    EXPECT_EQ(publicationReach(u"funnel"_s), Reach::funnel);
    for (const QString &other : {u"tailnet"_s, u""_s, u"Funnel"_s, u"funnel "_s, u"internet"_s})
        EXPECT_EQ(publicationReach(other), Reach::tailnet) << other.toStdString();
}

TEST(VeranoxPublicationActionResult, SuccessAndFailure)
{
    const auto success = VeranoxPublicationActionResult::success(u"Done."_s);
    const auto failure = VeranoxPublicationActionResult::failure(u"Done."_s);
    EXPECT_TRUE(success.isSuccess());
    EXPECT_FALSE(failure.isSuccess());
    EXPECT_EQ(failure.message, u"Done.");
    EXPECT_NE(success, failure);
}

TEST(VeranoxPublicationDraft, ANewOneIsEmpty)
{
    const Draft draft;
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_NE(draft, Draft()) << "each edit is one of its own";
    EXPECT_EQ(draft.originalName, std::nullopt);
    EXPECT_EQ(draft.reach, Reach::tailnet);
    EXPECT_FALSE(draft.tls || draft.disabled);
    EXPECT_EQ(draft.name + draft.displayName + draft.profile + draft.target + draft.port, u"");
}

TEST(VeranoxPublicationDraft, ShowsAnExistingPublication)
{
    VeranoxPublication record{.name = u"web"_s,
        .displayName = u"Site"_s,
        .profile = u"acme"_s,
        .target = u"localhost:80"_s,
        .reach = u"funnel"_s,
        .port = 443,
        .tls = true,
        .disabled = true};
    const Draft draft(record);
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_EQ(draft.originalName, u"web"_s);
    EXPECT_EQ(draft.name, u"web");
    EXPECT_EQ(draft.displayName, u"Site");
    EXPECT_EQ(draft.profile, u"acme");
    EXPECT_EQ(draft.target, u"localhost:80");
    EXPECT_EQ(draft.port, u"443");
    EXPECT_TRUE(draft.tls);
    EXPECT_EQ(draft.reach, Reach::funnel);
    EXPECT_TRUE(draft.disabled);
    record.displayName = u"web"_s;
    EXPECT_EQ(Draft(record).displayName, u"");
    for (const qint64 none : {0, -1}) {
        record.port = none;
        EXPECT_EQ(Draft(record).port, u"");
    }
}

TEST(VeranoxPublicationDraft, WhatCountsAsTheSameContent)
{
    const Draft draft = fullDraft();
    Draft same = draft;
    same.id = QUuid::createUuid();
    same.displayName = u"Other"_s;
    same.disabled = true;
    same.originalName = u"other"_s;
    same.name = u" web "_s;
    same.target += u' ';
    same.port = u" 443"_s;
    EXPECT_TRUE(draft.hasSameContent(same));
    EXPECT_FALSE(draft.hasSameContent(with(&Draft::name, u"Web"_s)));
    EXPECT_FALSE(draft.hasSameContent(with(&Draft::profile, u"acme "_s)));
    EXPECT_FALSE(draft.hasSameContent(with(&Draft::target, u"localhost:8080"_s)));
    EXPECT_FALSE(draft.hasSameContent(with(&Draft::port, u"0443"_s)));
    same = draft;
    same.tls = true;
    EXPECT_FALSE(draft.hasSameContent(same));
    same = draft;
    same.reach = Reach::funnel;
    EXPECT_FALSE(draft.hasSameContent(same));
}

TEST(VeranoxPublicationDraft, AnUntouchedDraftMakesItsPublication)
{
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same publications in every run
    const auto one = [&random](const QStringList &texts) {
        return texts.at(static_cast<qsizetype>(random() % static_cast<std::size_t>(texts.size())));
    };
    for (int round = 0; round < 500; ++round) {
        const VeranoxPublication record{.name = one({u"a"_s, u"web-1"_s}),
            .displayName = one({u""_s, u"Site"_s, u"Ünï ❤"_s}),
            .profile = one({u"acme"_s, u" work"_s}),
            .target = one({u"127.0.0.1:1"_s, u"localhost:65535"_s, u"[::1]:80"_s}),
            .reach = one({u"tailnet"_s, u"funnel"_s}),
            .port = static_cast<qint64>(random() % 65535) + 1,
            .tls = random() % 2 == 0,
            .disabled = random() % 2 == 0};
        const VeranoxEditablePublication expected{.displayName = record.displayName,
            .profile = record.profile,
            .target = record.target,
            .reach = record.reach,
            .port = record.port,
            .tls = record.tls,
            .disabled = record.disabled};
        const Draft draft(record);
        EXPECT_TRUE(draft.isReadyToSave());
        EXPECT_TRUE(draft.hasSameContent(Draft(record)));
        ASSERT_EQ(draft.makePublication().value(), expected) << "round " << round;
    }
}

TEST(VeranoxPublicationDraft, IsNewWhileItReplacesNoPublication)
{
    VeranoxPublicationDraft draft;
    EXPECT_TRUE(draft.isNew());
    draft.originalName = u"a"_s;
    EXPECT_FALSE(draft.isNew());
}
