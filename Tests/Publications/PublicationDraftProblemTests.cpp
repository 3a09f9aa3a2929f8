#include "Tests/Publications/PublicationDrafts.h"
#include "Tests/Support/QtPrinters.h"
#include <QList>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace publication_drafts;

namespace {

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
