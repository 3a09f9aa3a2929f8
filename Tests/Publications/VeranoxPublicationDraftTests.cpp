#include "Publications/VeranoxPublicationActionResult.h"
#include "Publications/VeranoxPublicationDraft.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using Draft = VeranoxPublicationDraft;
using Reach = VeranoxPublicationReach;

Draft fullDraft()
{
    Draft draft;
    draft.name = u"web"_s;
    draft.profile = u"acme"_s;
    draft.target = u"127.0.0.1:8080"_s;
    draft.port = u"443"_s;
    return draft;
}

Draft with(QString Draft::*field, const QString &text, Draft draft = fullDraft())
{
    draft.*field = text;
    return draft;
}

QString problem(const Draft &draft)
{
    const auto publication = draft.makePublication();
    return publication ? QString() : publication.error().message;
}

VeranoxPublication publication(const QString &name, const QString &profile, qint64 port)
{
    return {.name = name, .profile = profile, .port = port};
}

VeranoxProfile profile(const QString &name, const QString &displayName, const QString &backend)
{
    VeranoxProfile record;
    record.name = name;
    record.displayName = displayName;
    record.backend = backend;
    return record;
}

const QString badName =
    u"Publication name must be lowercase letters, numbers, hyphen, or underscore, and be at most 63 characters."_s;

} // namespace

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

TEST(VeranoxPublicationDraft, Names)
{
    struct Row {
        QString typed;
        bool isValid;
        QString problem;
    };
    const QList<Row> rows{
        {u"  Web-1 \n"_s, true, {}},
        {QString(63, u'a'), true, {}},
        {QString(64, u'a'), false, badName},
        {u"-web"_s, false, badName},
        {u"_web"_s, false, badName},
        {u"\u2003web\u2028"_s, true, {}},
        {u"\u200Bweb"_s, false, badName},
        {u" \r\n"_s, true, u"Publication name is required."_s},
    };
    for (const Row &row : rows) {
        const Draft draft = with(&Draft::name, row.typed);
        EXPECT_EQ(draft.isValidName(), row.isValid) << row.typed.toStdString();
        EXPECT_EQ(problem(draft), row.problem) << row.typed.toStdString();
        EXPECT_EQ(draft.isReadyToSave(), row.problem.isEmpty()) << row.typed.toStdString();
    }
    EXPECT_EQ(with(&Draft::name, u"  Web-1 \n"_s).normalName(), u"web-1");
}

TEST(VeranoxPublicationDraft, Targets)
{
    struct Row {
        QString typed;
        bool isValid;
        QString made;
    };
    const QList<Row> rows{
        {u" LOCALHOST:8080 "_s, true, u"localhost:8080"_s},
        {u"[::1]:80"_s, true, u"[::1]:80"_s},
        {u"::1:80"_s, true, u"[::1]:80"_s},
        {u" \n"_s, true, u"Target is required — the local service to publish, as host:port."_s},
        {u"localhost"_s, false, u"Target must use host:port."_s},
        {u":80"_s, false, u"Target host is required."_s},
        {u"localhost:http"_s, false, u"Target must be a number."_s},
        {u"localhost:0"_s, false, u"Target must be between 1 and 65535."_s},
        {u"192.168.1.5:80"_s, false, u"Target must be bound to loopback."_s},
    };
    for (const Row &row : rows) {
        const Draft draft = with(&Draft::target, row.typed);
        const auto made = draft.makePublication();
        EXPECT_EQ(made ? made->target : made.error().message, row.made) << row.typed.toStdString();
        EXPECT_EQ(draft.isValidTarget(), row.isValid) << row.typed.toStdString();
        EXPECT_EQ(draft.isReadyToSave(), made.has_value()) << row.typed.toStdString();
    }
}

TEST(VeranoxPublicationDraft, Ports)
{
    struct Row {
        QString typed;
        bool isValid;
        QString made;
    };
    const QList<Row> rows{
        {u" 443 "_s, true, u"443"_s},
        {u"+80"_s, true, u"80"_s},
        {u"65535"_s, true, u"65535"_s},
        {u" \n"_s, true, u"Tailnet port is required — Veranox does not pick one for you."_s},
        {u"abc"_s, false, u"Tailnet port must be a number."_s},
        {u"4 3"_s, false, u"Tailnet port must be a number."_s},
        {u"0"_s, false, u"Tailnet port must be between 1 and 65535."_s},
        {u"-443"_s, false, u"Tailnet port must be between 1 and 65535."_s},
        {u"65536"_s, false, u"Tailnet port must be between 1 and 65535."_s},
    };
    for (const Row &row : rows) {
        const Draft draft = with(&Draft::port, row.typed);
        const auto made = draft.makePublication();
        EXPECT_EQ(made ? QString::number(made->port) : made.error().message, row.made) << row.typed.toStdString();
        EXPECT_EQ(draft.isValidPort(), row.isValid) << row.typed.toStdString();
        EXPECT_EQ(draft.isReadyToSave(), made.has_value()) << row.typed.toStdString();
    }
}

TEST(VeranoxPublicationDraft, NamesTheFirstProblem)
{
    struct Row {
        QString Draft::*field;
        QString wrong;
        QString right;
        QString problem;
    };
    const QList<Row> rows{
        {&Draft::name, u" "_s, u"-"_s, u"Publication name is required."_s},
        {&Draft::name, u"-"_s, u"web"_s, badName},
        {&Draft::profile, u""_s, u" "_s, u"A profile is required."_s},
        {&Draft::target, u" "_s, u"x"_s, u"Target is required — the local service to publish, as host:port."_s},
        {&Draft::target, u"x"_s, u"localhost:1"_s, u"Target must use host:port."_s},
        {&Draft::port, u" "_s, u"x"_s, u"Tailnet port is required — Veranox does not pick one for you."_s},
        {&Draft::port, u"x"_s, u"1"_s, u"Tailnet port must be a number."_s},
    };
    Draft draft;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        draft.*row->field = row->wrong;
    for (const Row &row : rows) {
        EXPECT_EQ(problem(draft), row.problem);
        EXPECT_FALSE(draft.isReadyToSave());
        draft.*row.field = row.right;
    }
    EXPECT_EQ(problem(draft), QString());
    EXPECT_TRUE(draft.isReadyToSave());
}

TEST(VeranoxPublicationDraft, NameConflicts)
{
    struct Row {
        std::optional<QString> originalName;
        QString name;
        std::optional<QString> conflict;
    };
    const QList<Row> rows{
        {std::nullopt, u" B "_s, u"A publication named \"b\" already exists."_s},
        {std::nullopt, u"c"_s, std::nullopt},
        {std::nullopt, u" "_s, std::nullopt},
        {u"a"_s, u"b"_s, u"A publication named \"b\" already exists."_s},
        {u"a"_s, u" A"_s, std::nullopt},
        {u"a"_s, u"c"_s, std::nullopt},
    };
    const QList<VeranoxPublication> existing{publication(u"a"_s, {}, 1), publication(u"b"_s, {}, 2), {}};
    for (const Row &row : rows) {
        Draft draft = with(&Draft::name, row.name);
        draft.originalName = row.originalName;
        EXPECT_EQ(draft.nameConflict(existing), row.conflict) << row.name.toStdString();
    }
}

TEST(VeranoxPublicationDraft, PortConflicts)
{
    struct Row {
        std::optional<QString> originalName;
        QString name;
        QString profile;
        QString port;
        std::optional<QString> conflict;
    };
    const QString taken = u"Publication \"a\" already uses port 443 on profile \"acme\"."_s;
    const QList<Row> rows{
        {std::nullopt, u"new"_s, u"acme"_s, u" 443 "_s, taken},
        {std::nullopt, u"new"_s, u"acme"_s, u"+0443"_s, taken},
        {std::nullopt, u"new"_s, u"other"_s, u"443"_s, std::nullopt},
        {std::nullopt, u"new"_s, u""_s, u"443"_s, std::nullopt},
        {std::nullopt, u"new"_s, u"acme"_s, u"444"_s, std::nullopt},
        {std::nullopt, u"new"_s, u"acme"_s, u""_s, std::nullopt},
        {std::nullopt, u"new"_s, u"acme"_s, u"x"_s, std::nullopt},
        {u"a"_s, u"a"_s, u"acme"_s, u"443"_s, std::nullopt}, // its own
        {u"a"_s, u"renamed"_s, u"acme"_s, u"443"_s, std::nullopt}, // still its own
        {u"a"_s, u"renamed"_s, u"acme"_s, u"80"_s, u"Publication \"b\" already uses port 80 on profile \"acme\"."_s},
        {u"b"_s, u"b"_s, u"acme"_s, u"443"_s, taken},
    };
    const QList<VeranoxPublication> existing{publication(u"a"_s, u"acme"_s, 443), publication(u"b"_s, u"acme"_s, 80),
        publication(u"second"_s, u"acme"_s, 80)};
    for (const Row &row : rows) {
        Draft draft = with(&Draft::port, row.port, with(&Draft::profile, row.profile, with(&Draft::name, row.name)));
        draft.originalName = row.originalName;
        EXPECT_EQ(draft.portConflict(existing), row.conflict) << row.port.toStdString();
    }
}

TEST(VeranoxPublicationDraft, ProfilesThatCannotPublish)
{
    const QList<VeranoxProfile> profiles{
        profile(u"acme"_s, u"Acme"_s, u"tsnet"_s), profile(u"old"_s, u"Old one"_s, u"tailscaled"_s)};
    EXPECT_EQ(with(&Draft::profile, u""_s).profileProblem({}), std::nullopt);
    EXPECT_EQ(with(&Draft::profile, u"acme"_s).profileProblem(profiles), std::nullopt);
    EXPECT_EQ(with(&Draft::profile, u"Acme"_s).profileProblem(profiles),
        u"That profile is no longer in the configuration. Choose an existing profile."_s);
    EXPECT_EQ(with(&Draft::profile, u"old"_s).profileProblem(profiles),
        u"Profile Old one runs on the tailscaled backend. Publications need backend: tsnet — set it on that profile "
        "first. Switching backends means signing that profile in again, because the two backends do not share state."_s);
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
