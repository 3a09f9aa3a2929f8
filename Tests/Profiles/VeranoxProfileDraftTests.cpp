#include "Profiles/VeranoxProfileDraft.h"
#include "Profiles/VeranoxProfileRoutingSignature.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

using Draft = VeranoxProfileDraft;

VeranoxEditableProfile existingProfile()
{
    return {.displayName = u"Acme"_s,
        .icon = u"wifi"_s,
        .color = u"pink"_s,
        .backend = u"tailscaled"_s,
        .hostname = u"laptop"_s,
        .authKeyEnv = u"KEY"_s,
        .controlURL = u"https://control"_s,
        .suffixes = {u".a.ts.net"_s, u".b.ts.net"_s},
        .matchRoot = true,
        .acceptRoutes = true,
        .ipRoutes = {u"10.0.0.0/8"_s, u"10.1.0.0/16"_s},
        .stateDir = u"/state"_s,
        .socket = u"/socket"_s,
        .httpProxy = u"127.0.0.1:1"_s,
        .socks5Proxy = u"127.0.0.1:2"_s,
        .port = 9};
}

Draft with(QString Draft::*field, const QString &text, Draft draft = Draft::empty(3))
{
    draft.*field = text;
    return draft;
}

QString problem(const Draft &draft)
{
    const auto profile = draft.makeProfile(std::nullopt);
    return profile ? QString() : profile.error().message;
}

VeranoxEditableProfile made(const Draft &draft)
{
    return draft.makeProfile(std::nullopt).value();
}

} // namespace

TEST(VeranoxProfileDraft, TheEmptyDraft)
{
    const Draft draft = Draft::empty(3);
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_NE(draft.id, Draft::empty(3).id);
    EXPECT_EQ(draft.originalName, std::nullopt);
    EXPECT_EQ(draft.name, u"tailnet3");
    EXPECT_EQ(draft.displayName, u"Tailnet 3");
    EXPECT_EQ(draft.icon, u"network");
    EXPECT_EQ(draft.color, u"green");
    EXPECT_EQ(draft.backend, u"tsnet");
    EXPECT_EQ(draft.suffixesText, u".example.ts.net");
    EXPECT_EQ(draft.ipRoutesText, u"");
    EXPECT_TRUE(draft.matchRoot);
    EXPECT_FALSE(draft.acceptRoutes);
    EXPECT_EQ(draft.hostname, u"");
    EXPECT_EQ(draft.runtimeFields, VeranoxProfileRuntimeFields());
    EXPECT_TRUE(draft.isReadyToSave());
}

TEST(VeranoxProfileDraft, ShowsAnExistingProfile)
{
    const Draft draft(u"acme"_s, existingProfile());
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_EQ(draft.originalName, u"acme"_s);
    EXPECT_EQ(draft.name, u"acme");
    EXPECT_EQ(draft.displayName, u"Acme");
    EXPECT_EQ(draft.icon, u"wifi");
    EXPECT_EQ(draft.color, u"pink");
    EXPECT_EQ(draft.backend, u"tailscaled");
    EXPECT_EQ(draft.suffixesText, u".a.ts.net, .b.ts.net");
    EXPECT_EQ(draft.ipRoutesText, u"10.0.0.0/8, 10.1.0.0/16");
    EXPECT_TRUE(draft.matchRoot);
    EXPECT_TRUE(draft.acceptRoutes);
    EXPECT_EQ(draft.hostname, u"laptop");
    EXPECT_EQ(draft.runtimeFields,
        (VeranoxProfileRuntimeFields{u"/state"_s, u"/socket"_s, u"127.0.0.1:1"_s, u"127.0.0.1:2"_s, 9}));
}

TEST(VeranoxProfileDraft, ShowsWhatAnOldProfileLacks)
{
    const Draft draft(u"old"_s, {.displayName = u"At WORK"_s, .icon = u"bogus"_s});
    EXPECT_EQ(draft.icon, u"briefcase.fill");
    EXPECT_EQ(draft.color, u"green");
    EXPECT_EQ(draft.backend, u"tsnet");
}

TEST(VeranoxProfileDraft, SplitsLists)
{
    EXPECT_EQ(Draft::splitList(u"a,,b\n\tc  d"_s), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    EXPECT_EQ(Draft::splitList(u".a.ts.net, .b.ts.net"_s), Draft::splitList(u".a.ts.net\r\n.b.ts.net\r\n"_s));
    EXPECT_EQ(Draft::splitList(u"b a b"_s), QStringList({u"b"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(Draft::splitList(u"  "_s), QStringList());
    EXPECT_EQ(Draft::splitList(u""_s), QStringList());
    EXPECT_EQ(Draft::splitList(u"\u00A0,\r,\u2028,x"_s), QStringList({u"x"_s}));
    EXPECT_EQ(Draft::splitList(u"\u00A0x\u00A0y"_s), QStringList({u"x\u00A0y"_s}));
}

TEST(VeranoxProfileDraft, ProfileNames)
{
    for (const QString &valid : {u"a"_s, u"9lives"_s, u"a-b_c"_s, u"a-"_s, QString(63, u'a')})
        EXPECT_TRUE(Draft::isValidProfileName(valid)) << valid.toStdString();
    for (const QString &invalid :
        {u""_s, u"-x"_s, u"_x"_s, u"a B"_s, u"A"_s, u"a.b"_s, u"é"_s, u"a\u0301"_s, u"٣"_s, QString(64, u'a')})
        EXPECT_FALSE(Draft::isValidProfileName(invalid)) << invalid.toStdString();
}

TEST(VeranoxProfileDraft, Hostnames)
{
    for (const QString &valid : {u""_s, u"my-host"_s, u"ABC"_s, u"0"_s, QString(63, u'h')})
        EXPECT_TRUE(Draft::isValidHostname(valid)) << valid.toStdString();
    for (const QString &invalid : {u"my_host"_s, u"-x"_s, u"x-"_s, u"-"_s, u"a.b"_s, u"ü"_s, QString(64, u'h')})
        EXPECT_FALSE(Draft::isValidHostname(invalid)) << invalid.toStdString();
}

TEST(VeranoxProfileDraft, AnEmptyNameShowsNoErrorButIsNotReady)
{
    const Draft draft = with(&Draft::name, u"   "_s);
    EXPECT_TRUE(draft.isValidName());
    EXPECT_FALSE(draft.isReadyToSave());
    EXPECT_TRUE(with(&Draft::name, u" ok "_s).isValidName());
    EXPECT_FALSE(with(&Draft::name, u"Not Ok"_s).isValidName());
}

TEST(VeranoxProfileDraft, Readiness)
{
    EXPECT_TRUE(with(&Draft::name, u" ok "_s).isReadyToSave());
    EXPECT_FALSE(with(&Draft::name, u"Not"_s).isReadyToSave());
    EXPECT_FALSE(with(&Draft::suffixesText, u" , "_s).isReadyToSave());
    EXPECT_TRUE(with(&Draft::suffixesText, u"a/b"_s).isReadyToSave());
    EXPECT_TRUE(with(&Draft::backend, u"tailscaled"_s).isReadyToSave());
    EXPECT_FALSE(with(&Draft::backend, u"tsnet "_s).isReadyToSave());
    EXPECT_FALSE(with(&Draft::backend, u""_s).isReadyToSave());
    EXPECT_TRUE(with(&Draft::hostname, u" host "_s).isReadyToSave());
    EXPECT_FALSE(with(&Draft::hostname, u"-"_s).isReadyToSave());
}

TEST(VeranoxProfileDraft, NamesTheFirstProblem)
{
    struct Row {
        QString Draft::*field;
        QString wrong;
        QString right;
        QString problem;
    };
    const QString badName =
        u"Profile name must be lowercase letters, numbers, hyphen, or underscore, start with a letter "
        "or number, and be at most 63 characters."_s;
    const QString badHostname = u"Router hostname must be at most 63 letters, numbers, or hyphens, and cannot start or "
                                "end with a hyphen."_s;
    const QList<Row> rows{
        {&Draft::name, u" \n"_s, u"A B"_s, u"Profile name is required."_s},
        {&Draft::name, u"A B"_s, u" ab "_s, badName},
        {&Draft::suffixesText, u" , "_s, u".ok a/b"_s, u"At least one .ts.net suffix is required."_s},
        {&Draft::suffixesText, u".ok a/b c/d"_s, u"a\u00A0b"_s, u"Suffix \"a/b\" cannot contain spaces or a slash."_s},
        {&Draft::suffixesText, u"a\u00A0b"_s, u".ok"_s, u"Suffix \"a\u00A0b\" cannot contain spaces or a slash."_s},
        {&Draft::backend, u"Tsnet"_s, u"tsnet"_s, u"Backend must be tsnet or tailscaled."_s},
        {&Draft::hostname, u"my_host"_s, u" my-host "_s, badHostname},
    };
    Draft draft;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        draft.*row->field = row->wrong;
    for (const Row &row : rows) {
        EXPECT_EQ(problem(draft), row.problem);
        draft.*row.field = row.right;
    }
    EXPECT_EQ(problem(draft), QString());
}

TEST(VeranoxProfileDraft, ANewProfileTakesTheDraftsRuntimeFields)
{
    Draft draft = Draft::empty(1);
    draft.displayName = u" Home "_s;
    draft.hostname = u" host "_s;
    draft.suffixesText = u".a .b .a"_s;
    draft.ipRoutesText = u"10.0.0.0/8"_s;
    draft.acceptRoutes = true;
    draft.runtimeFields = {u" /s "_s, u"\t/k"_s, u"h\n"_s, u" p "_s, 7};
    const VeranoxEditableProfile expected{.displayName = u"Home"_s,
        .icon = u"network"_s,
        .color = u"green"_s,
        .backend = u"tsnet"_s,
        .hostname = u"host"_s,
        .suffixes = {u".a"_s, u".b"_s, u".a"_s},
        .matchRoot = true,
        .acceptRoutes = true,
        .ipRoutes = {u"10.0.0.0/8"_s},
        .stateDir = u"/s"_s,
        .socket = u"/k"_s,
        .httpProxy = u"h"_s,
        .socks5Proxy = u"p"_s,
        .port = 7};
    EXPECT_EQ(made(draft), expected);
}

TEST(VeranoxProfileDraft, AnEditKeepsWhatAPersonCannotEdit)
{
    Draft draft(u"acme"_s, existingProfile());
    draft.runtimeFields = {u"x"_s, u"x"_s, u"x"_s, u"x"_s, 1};
    draft.hostname = u"other"_s;
    VeranoxEditableProfile expected = existingProfile();
    expected.hostname = u"other"_s;
    EXPECT_EQ(draft.makeProfile(existingProfile()).value(), expected);
}

TEST(VeranoxProfileDraft, AnUntouchedDraftMakesItsProfile)
{
    EXPECT_EQ(Draft(u"acme"_s, existingProfile()).makeProfile(existingProfile()).value(), existingProfile());
}

TEST(VeranoxProfileDraft, TheTitleFallsBackOnTheName)
{
    EXPECT_EQ(made(with(&Draft::displayName, u"  "_s)).displayName, u"tailnet3");
    Draft work = with(&Draft::name, u" work "_s, with(&Draft::displayName, u" "_s));
    work.icon = work.color = u"?"_s;
    EXPECT_EQ(made(work).displayName, u"work");
    EXPECT_EQ(made(work).icon, u"briefcase.fill");
    EXPECT_EQ(made(work).color, u"green");
}

TEST(VeranoxProfileDraft, AnUnknownIconOrColourIsGuessedFromTheTitle)
{
    const Draft office = with(&Draft::displayName, u"Office"_s, with(&Draft::icon, u"bogus"_s));
    EXPECT_EQ(made(office).icon, u"building.2.fill");
    EXPECT_EQ(made(office).color, u"green");
    EXPECT_EQ(made(with(&Draft::color, u"bogus"_s, office)).color, u"teal");
}

TEST(VeranoxProfileDraft, HasChangesOnlyAgainstALoadedDocument)
{
    auto document = std::optional(VeranoxEditableConfig::emptyForFirstProfile());
    document->profiles.insert(u"acme"_s, existingProfile());
    const Draft untouched(u"acme"_s, existingProfile());
    EXPECT_FALSE(profileDraftHasChanges(Draft::empty(1), std::nullopt));
    EXPECT_TRUE(profileDraftHasChanges(Draft::empty(1), document));
    EXPECT_FALSE(profileDraftHasChanges(untouched, document));
    EXPECT_FALSE(profileDraftHasChanges(with(&Draft::name, u" acme "_s, untouched), document));
    EXPECT_FALSE(profileDraftHasChanges(with(&Draft::suffixesText, u".a.ts.net\n.b.ts.net"_s, untouched), document));
    EXPECT_TRUE(profileDraftHasChanges(with(&Draft::name, u"other"_s, untouched), document));
    EXPECT_TRUE(profileDraftHasChanges(with(&Draft::color, u"red"_s, untouched), document));
    EXPECT_TRUE(profileDraftHasChanges(with(&Draft::suffixesText, u""_s, untouched), document));
    document->profiles.clear();
    EXPECT_TRUE(profileDraftHasChanges(untouched, document));
}

TEST(VeranoxProfileRoutingSignature, TellsRoutingFromLooks)
{
    const VeranoxProfileRoutingSignature signature(existingProfile());
    using Change = std::function<void(VeranoxEditableProfile &)>;
    const auto changed = [](const Change &change) {
        VeranoxEditableProfile profile = existingProfile();
        change(profile);
        return VeranoxProfileRoutingSignature(profile);
    };
    for (const auto field : {&VeranoxEditableProfile::displayName, &VeranoxEditableProfile::icon,
             &VeranoxEditableProfile::color, &VeranoxEditableProfile::authKeyEnv, &VeranoxEditableProfile::controlURL})
        EXPECT_EQ(changed([&](auto &profile) { profile.*field += u'x'; }), signature);
    for (const auto field :
        {&VeranoxEditableProfile::backend, &VeranoxEditableProfile::hostname, &VeranoxEditableProfile::stateDir,
            &VeranoxEditableProfile::socket, &VeranoxEditableProfile::httpProxy, &VeranoxEditableProfile::socks5Proxy})
        EXPECT_NE(changed([&](auto &profile) { profile.*field += u'x'; }), signature);
    for (const auto field : {&VeranoxEditableProfile::suffixes, &VeranoxEditableProfile::ipRoutes})
        EXPECT_NE(changed([&](auto &profile) { std::ranges::reverse(profile.*field); }), signature);
    for (const auto field : {&VeranoxEditableProfile::matchRoot, &VeranoxEditableProfile::acceptRoutes})
        EXPECT_NE(changed([&](auto &profile) { profile.*field = false; }), signature);
    EXPECT_NE(changed([](auto &profile) { profile.port = 10; }), signature);
}
