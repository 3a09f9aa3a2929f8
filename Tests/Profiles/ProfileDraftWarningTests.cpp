#include "Profiles/VeranoxProfileDraft.h"
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

TEST(ProfileDraftWarnings, StandBeneathTheFieldThatCannotBeSaved)
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
        EXPECT_EQ(draft.nameWarning().value_or(QString()), row.nameWarning) << row.name.toStdString();
        EXPECT_EQ(draft.hostnameWarning().value_or(QString()), row.hostnameWarning) << row.hostname.toStdString();
        EXPECT_EQ(draft.isValidName(), row.nameWarning.isEmpty()) << row.name.toStdString();
    }
}
