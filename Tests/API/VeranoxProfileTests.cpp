#include "API/Records/VeranoxProfile.h"
#include "Tests/Support/RecordChecks.h"
#include <QMetaProperty>

using namespace Qt::StringLiterals;

namespace {

const QByteArray fullProfile = R"({
    "name": "acme", "display_name": "Acme", "icon": "wifi", "color": "pink", "hostname": "laptop",
    "backend": "tailscaled", "suffixes": [".a.ts.net", ".b.ts.net"], "match_root": true, "ip_routes": ["10.0.0.0/8"],
    "state_dir": "/state", "socket": "/socket", "http_proxy": "127.0.0.1:1", "socks5_proxy": "127.0.0.1:2",
    "udp_port": 41641, "status": {
        "ok": true, "backend_state": "Running", "raw": "{}", "error": "none", "checked_at": "2026-01-02T03:04:05Z"}})";

VeranoxProfileStatus fullStatus()
{
    return {.ok = true,
        .backendState = u"Running"_s,
        .raw = u"{}"_s,
        .error = u"none"_s,
        .checkedAt = u"2026-01-02T03:04:05Z"_s};
}

} // namespace

TEST(VeranoxProfile, ReadsEachKeyIntoItsField)
{
    const VeranoxProfile expected{
        .name = u"acme"_s,
        .displayName = u"Acme"_s,
        .icon = u"wifi"_s,
        .color = u"pink"_s,
        .hostname = u"laptop"_s,
        .backend = u"tailscaled"_s,
        .suffixes = {u".a.ts.net"_s, u".b.ts.net"_s},
        .matchRoot = true,
        .ipRoutes = {u"10.0.0.0/8"_s},
        .stateDir = u"/state"_s,
        .socket = u"/socket"_s,
        .httpProxy = u"127.0.0.1:1"_s,
        .socks5Proxy = u"127.0.0.1:2"_s,
        .udpPort = 41641,
        .status = fullStatus(),
    };
    EXPECT_EQ(decodeRecord<VeranoxProfile>(fullProfile), expected);
}

TEST(VeranoxProfile, AnEmptyObjectTakesEveryDefault)
{
    const VeranoxProfile expected{
        .name = u"unknown"_s,
        .displayName = u"unknown"_s,
        .backend = u"tsnet"_s,
        .status = {.error = u"Not checked yet."_s},
    };
    const auto profiles = decodeRecord<QList<VeranoxProfile>>("[{}]");
    ASSERT_EQ(profiles.size(), 1);
    EXPECT_EQ(profiles.first(), expected);
    EXPECT_EQ(profiles.first().id(), u"unknown");
}

TEST(VeranoxProfile, TheTitleDefaultsToTheName)
{
    EXPECT_EQ(decodeRecord<VeranoxProfile>(R"({"name": "acme"})").displayName, u"acme");
    EXPECT_EQ(decodeRecord<VeranoxProfile>(R"({"display_name": null, "name": "acme"})").displayName, u"acme");
    EXPECT_EQ(decodeRecord<VeranoxProfile>(R"({"display_name": "", "name": "acme"})").displayName, u"");
}

TEST(VeranoxProfile, TheBackendHasASecondKey)
{
    const auto backend = [](const QByteArray &json) { return decodeRecord<VeranoxProfile>(json).backend; };
    EXPECT_EQ(backend(R"({"Backend": "tailscaled"})"), u"tailscaled");
    EXPECT_EQ(backend(R"({"backend": null, "Backend": "tailscaled"})"), u"tailscaled");
    EXPECT_EQ(backend(R"({"backend": "tsnet", "Backend": "tailscaled"})"), u"tsnet");
    EXPECT_EQ(backend(R"({"backend": "tsnet", "Backend": 3})"), u"tsnet");
    EXPECT_EQ(backend(R"({"backend": null, "Backend": null})"), u"tsnet");
}

TEST(VeranoxProfile, AWrongTypeInEitherKeyOfTheBackendFails)
{
    EXPECT_EQ(checks::failure<QList<VeranoxProfile>>(R"([{}, {"backend": 3}])").value().place(), u"[1].backend");
    EXPECT_EQ(checks::failure<VeranoxProfile>(R"({"Backend": 3})").value().place(), u"Backend");
    EXPECT_EQ(checks::failure<VeranoxProfile>(R"({"backend": 3, "Backend": "tsnet"})").value().place(), u"backend");
}

TEST(VeranoxProfile, EachKeyMayBeMissingButNotOfAnotherType)
{
    const QJsonObject full = checks::object(fullProfile);
    checks::expectAbsentAndNullAreTheSame<VeranoxProfile>(full);
    checks::expectWrongTypesFail<VeranoxProfile>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxProfile>(full);
}

TEST(VeranoxProfile, ListsHoldTextOnly)
{
    EXPECT_EQ(checks::failure<VeranoxProfile>(R"({"suffixes": [".a", 3]})").value().place(), u"suffixes[1]");
    EXPECT_EQ(checks::failure<VeranoxProfile>(R"({"ip_routes": [null]})").value().place(), u"ip_routes[0]");
    EXPECT_TRUE(decodeRecord<VeranoxProfile>(R"({"suffixes": []})").suffixes.isEmpty());
}

TEST(VeranoxProfileStatus, AnEmptyStatusIsNotAnAbsentOne)
{
    EXPECT_EQ(decodeRecord<VeranoxProfile>(R"({"status": {}})").status, VeranoxProfileStatus());
    EXPECT_EQ(decodeRecord<VeranoxProfile>(R"({"status": null})").status, VeranoxProfileStatus::notCheckedYet());
}

TEST(VeranoxProfileStatus, EachKeyMayBeMissingButNotOfAnotherType)
{
    const QJsonObject full = checks::object(fullProfile).value("status"_L1).toObject();
    for (const QString &key : full.keys()) {
        const auto status = [&](const QJsonValue &value) {
            return checks::text({{u"status"_s, checks::with(full, key, value)}});
        };
        EXPECT_NE(decodeRecord<VeranoxProfile>(status(QJsonValue::Null)).status, fullStatus());
        for (const QJsonValue &wrong : checks::valuesOfOtherTypes(full.value(key)))
            EXPECT_EQ(checks::failure<VeranoxProfile>(status(wrong)).value().place(), u"status."_s + key);
    }
}

TEST(VeranoxProfile, DrawsKnownIconsAndColoursAndGuessesTheRest)
{
    const auto look = [](const QString &icon, const QString &color, const QString &title) {
        const VeranoxProfile profile{.displayName = title, .icon = icon, .color = color};
        return QStringList{profile.profileIconName(), profile.profileAccentColor()};
    };
    EXPECT_EQ(look(u"wifi"_s, u"pink"_s, u"Work"_s), QStringList({u"wifi"_s, u"pink"_s}));
    EXPECT_EQ(look({}, {}, u"My WORK net"_s), QStringList({u"briefcase.fill"_s, u"green"_s}));
    EXPECT_EQ(look(u"Wifi"_s, u"PINK"_s, u"Home"_s), QStringList({u"building.2.fill"_s, u"teal"_s}));
}
