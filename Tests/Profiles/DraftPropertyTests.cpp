#include "Profiles/VeranoxProfileDraft.h"
#include "Profiles/VeranoxRouterSettingsDraft.h"
#include "Tests/Support/Properties.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString malformedName =
    u"Profile name must be lowercase letters, numbers, hyphen, or underscore, start with a letter or number, and be at most 63 characters."_s;
const QString malformedHostname =
    u"Router hostname must be at most 63 letters, numbers, or hyphens, and cannot start or end with a hyphen."_s;

VeranoxProfileDraft editedDraft()
{
    return {u"acme"_s,
        {.displayName = u"Acme"_s,
            .icon = u"wifi"_s,
            .color = u"pink"_s,
            .backend = u"tailscaled"_s,
            .hostname = u"laptop"_s,
            .authKeyEnv = {},
            .controlURL = {},
            .suffixes = {u".a.ts.net"_s, u".b.ts.net"_s},
            .matchRoot = true,
            .acceptRoutes = true,
            .ipRoutes = {u"10.0.0.0/8"_s},
            .stateDir = u"/state"_s,
            .socket = u"/socket"_s,
            .httpProxy = u"127.0.0.1:1"_s,
            .socks5Proxy = u"127.0.0.1:2"_s,
            .port = 9}};
}

} // namespace

TEST(ProfileDraftProperties, EachHasTheValueOfTheDraft)
{
    const VeranoxProfileDraft draft = editedDraft();
    properties::expectAll(draft,
        {
            {"id", draft.id},
            {"isNew", false},
            {"originalName", u"acme"_s},
            {"name", u"acme"_s},
            {"displayName", u"Acme"_s},
            {"icon", u"wifi"_s},
            {"color", u"pink"_s},
            {"backend", u"tailscaled"_s},
            {"suffixesText", u".a.ts.net, .b.ts.net"_s},
            {"ipRoutesText", u"10.0.0.0/8"_s},
            {"matchRoot", true},
            {"acceptRoutes", true},
            {"hostname", u"laptop"_s},
            {"runtimeFields", QVariant::fromValue(draft.runtimeFields)},
            {"isValidName", true},
            {"nameWarning", QString()},
            {"hostnameWarning", QString()},
            {"isReadyToSave", true},
        });
}

TEST(ProfileDraftProperties, OfTheRuntimeFields)
{
    properties::expectAll(editedDraft().runtimeFields,
        {
            {"stateDir", u"/state"_s},
            {"socket", u"/socket"_s},
            {"httpProxy", u"127.0.0.1:1"_s},
            {"socks5Proxy", u"127.0.0.1:2"_s},
            {"port", qint64(9)},
        });
}

TEST(ProfileDraftProperties, OfANewProfileNameNoOriginal)
{
    const VeranoxProfileDraft draft = VeranoxProfileDraft::empty(1);
    EXPECT_EQ(properties::read(draft, "isNew"), true);
    EXPECT_EQ(properties::read(draft, "originalName"), QString());
}

TEST(ProfileDraftProperties, WarnBeneathTheFieldThatCannotBeSaved)
{
    struct Row {
        QString name;
        QString hostname;
        QString nameWarning;
        QString hostnameWarning;
    };
    const QString longest(63, u'a');
    const QList<Row> rows{
        {u"acme"_s, u"my-host"_s, {}, {}},
        {u" acme "_s, u" ABC "_s, {}, {}},
        {{}, {}, {}, {}},
        {u"   "_s, u" \n"_s, {}, {}},
        {longest, longest, {}, {}},
        {u"9lives"_s, u"9"_s, {}, {}},
        {longest + u'a', longest + u'a', malformedName, malformedHostname},
        {u"-x"_s, u"-x"_s, malformedName, malformedHostname},
        {u"_x"_s, u"x-"_s, malformedName, malformedHostname},
        {u"a B"_s, u"my_host"_s, malformedName, malformedHostname},
        {u"é"_s, {}, malformedName, {}},
        {u"acme"_s, u"é"_s, {}, malformedHostname},
    };
    for (const Row &row : rows) {
        VeranoxProfileDraft draft = editedDraft();
        draft.name = row.name;
        draft.hostname = row.hostname;
        EXPECT_EQ(properties::read(draft, "nameWarning"), row.nameWarning) << row.name.toStdString();
        EXPECT_EQ(properties::read(draft, "hostnameWarning"), row.hostnameWarning) << row.hostname.toStdString();
        EXPECT_EQ(properties::read(draft, "isValidName"), row.nameWarning.isEmpty()) << row.name.toStdString();
    }
}

TEST(RouterSettingsDraftProperties, EachHasTheValueOfTheDraftAndTakesWhatIsTyped)
{
    VeranoxRouterSettingsDraft draft({.httpProxy = u"127.0.0.1:1"_s,
        .socks5Proxy = u"127.0.0.1:2"_s,
        .pacListen = u"127.0.0.1:3"_s,
        .profileHTTPProxyBase = 4,
        .profileSOCKS5ProxyBase = 5,
        .profileUDPPortBase = 0,
        .profileHostnameBase = u"base"_s,
        .tunnelListenBase = 6});
    properties::expectAll(draft,
        {
            {"httpProxy", u"127.0.0.1:1"_s},
            {"socks5Proxy", u"127.0.0.1:2"_s},
            {"pacListen", u"127.0.0.1:3"_s},
            {"profileHTTPProxyBase", u"4"_s},
            {"profileSOCKS5ProxyBase", u"5"_s},
            {"profileUDPPortBase", u"0"_s},
            {"profileHostnameBase", u"base"_s},
            {"tunnelListenBase", u"6"_s},
        });

    const QMetaObject &meta = VeranoxRouterSettingsDraft::staticMetaObject;
    for (int index = 0; index < meta.propertyCount(); ++index) {
        const QString typed = u" typed "_s + QString::number(index);
        ASSERT_TRUE(meta.property(index).writeOnGadget(&draft, typed));
        EXPECT_EQ(meta.property(index).readOnGadget(&draft), typed);
    }
}
