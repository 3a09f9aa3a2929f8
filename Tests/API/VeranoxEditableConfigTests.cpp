#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray fullDocument = R"({
    "Version": 3,
    "Router": {
        "HTTPProxy": "h", "SOCKS5Proxy": "s", "PACListen": "p", "ProfileHTTPProxyBase": 1, "ProfileSOCKS5Base": 2,
        "ProfileUDPPortBase": 0, "ProfileHostnameBase": "b", "TunnelListenBase": 4},
    "Tailscale": {"TailscaleBin": "ts", "TailscaledBin": "tsd"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Profiles": {
        "acme": {
            "DisplayName": "Acme", "Icon": "wifi", "Color": "pink", "Backend": "tailscaled", "Hostname": "h",
            "AuthKeyEnv": "KEY", "ControlURL": "https://c", "Suffixes": [".a", ".b"], "MatchRoot": true,
            "AcceptRoutes": true, "IPRoutes": ["10.0.0.0/8"], "StateDir": "/s", "Socket": "/k", "HTTPProxy": "hp",
            "SOCKS5Proxy": "sp", "Port": 9}},
    "Security": {
        "RequireLoopbackListeners": true, "AllowCrossProfileFallback": true, "AllowIPLiterals": true,
        "AllowUnknownTSNet": true}})";

const VeranoxEditableProfile acme{
    .displayName = u"Acme"_s,
    .icon = u"wifi"_s,
    .color = u"pink"_s,
    .backend = u"tailscaled"_s,
    .hostname = u"h"_s,
    .authKeyEnv = u"KEY"_s,
    .controlURL = u"https://c"_s,
    .suffixes = {u".a"_s, u".b"_s},
    .matchRoot = true,
    .acceptRoutes = true,
    .ipRoutes = {u"10.0.0.0/8"_s},
    .stateDir = u"/s"_s,
    .socket = u"/k"_s,
    .httpProxy = u"hp"_s,
    .socks5Proxy = u"sp"_s,
    .port = 9,
};

const VeranoxEditableConfig document{
    .version = 3,
    .router = {.httpProxy = u"h"_s,
        .socks5Proxy = u"s"_s,
        .pacListen = u"p"_s,
        .profileHTTPProxyBase = 1,
        .profileSOCKS5ProxyBase = 2,
        .profileUDPPortBase = 0,
        .profileHostnameBase = u"b"_s,
        .tunnelListenBase = 4},
    .tailscale = {.tailscaleBin = u"ts"_s, .tailscaledBin = u"tsd"_s},
    .paths = {.appSupportDir = u"~/a"_s, .configDir = u"~/c"_s},
    .profiles = {{u"acme"_s, acme}},
    .security = {.requireLoopbackListeners = true,
        .allowCrossProfileFallback = true,
        .allowIPLiterals = true,
        .allowUnknownTSNet = true},
};

const VeranoxEditableRouterConfig routerDefaults{
    .httpProxy = u"127.0.0.1:43100"_s,
    .socks5Proxy = u"127.0.0.1:43101"_s,
    .pacListen = u"127.0.0.1:43180"_s,
    .profileHTTPProxyBase = 43110,
    .profileSOCKS5ProxyBase = 43111,
    .profileUDPPortBase = 43400,
    .profileHostnameBase = u"veranox"_s,
    .tunnelListenBase = 43300,
};

// The full document with one section's key changed or, for an undefined value, removed.
QByteArray changed(const QString &section, const QString &key, const QJsonValue &value)
{
    QJsonObject whole = checks::object(fullDocument);
    QJsonObject part = whole.value(section).toObject();
    if (value.isUndefined())
        part.remove(key);
    else
        part.insert(key, value);
    whole.insert(section, part);
    return checks::text(whole);
}

QStringList keysOf(const QString &section)
{
    return checks::object(fullDocument).value(section).toObject().keys();
}

} // namespace

TEST(VeranoxEditableConfig, ReadsEachKeyIntoItsField)
{
    EXPECT_EQ(decodeRecord<VeranoxEditableConfig>(fullDocument), document);
}

TEST(VeranoxEditableConfig, AllTopLevelKeysAreRequired)
{
    const QJsonObject full = checks::object(fullDocument);
    checks::expectEachKeyIsRequired<VeranoxEditableConfig>(full);
    for (const QString &key : full.keys()) {
        const QJsonObject broken = checks::with(full, key, u"text"_s);
        EXPECT_EQ(checks::failure<VeranoxEditableConfig>(checks::text(broken)).value().place(), key);
    }
}

TEST(VeranoxEditableConfig, WithoutSecurityItFailsButTheSmallViewReadsIt)
{
    const QByteArray bytes = checks::text(checks::without(checks::object(fullDocument), u"Security"_s));
    EXPECT_TRUE(checks::failure<VeranoxEditableConfig>(bytes));
    EXPECT_EQ(decodeRecord<VeranoxConfig>(bytes).router.httpProxy, u"h");
}

TEST(VeranoxEditableConfig, SectionsOfCommandsPathsAndSecurityAreStrict)
{
    for (const QString &section : {u"Tailscale"_s, u"Paths"_s, u"Security"_s}) {
        for (const QString &key : keysOf(section)) {
            for (const QJsonValue &value :
                {QJsonValue(QJsonValue::Undefined), QJsonValue(QJsonValue::Null), QJsonValue(3)}) {
                const auto error = checks::failure<VeranoxEditableConfig>(changed(section, key, value));
                EXPECT_EQ(error.value().place(), section + u'.' + key);
            }
        }
    }
}

TEST(VeranoxEditableConfig, TheRouterSectionIsLenient)
{
    const QByteArray empty = checks::text(checks::with(checks::object(fullDocument), u"Router"_s, QJsonObject()));
    EXPECT_EQ(decodeRecord<VeranoxEditableConfig>(empty).router, routerDefaults);
    EXPECT_EQ(VeranoxEditableRouterConfig::defaults(), routerDefaults);
    for (const QString &key : keysOf(u"Router"_s)) {
        const auto absent = decodeRecord<VeranoxEditableConfig>(changed(u"Router"_s, key, QJsonValue::Undefined));
        EXPECT_EQ(absent, decodeRecord<VeranoxEditableConfig>(changed(u"Router"_s, key, QJsonValue::Null)));
        EXPECT_NE(absent.router, document.router);
        EXPECT_TRUE(checks::failure<VeranoxEditableConfig>(changed(u"Router"_s, key, true)));
    }
}

TEST(VeranoxEditableConfig, TheRouterSectionIsTakenAsSent)
{
    const auto read = decodeRecord<VeranoxEditableConfig>(changed(u"Router"_s, u"PACListen"_s, u"0.0.0.0:1"_s));
    EXPECT_EQ(read.router.pacListen, u"0.0.0.0:1");
}

TEST(VeranoxEditableProfile, AnEmptyEntryTakesEveryDefault)
{
    const VeranoxEditableProfile expected{.icon = u"building.2.fill"_s, .color = u"teal"_s, .backend = u"tsnet"_s};
    EXPECT_EQ(decodeRecord<VeranoxEditableProfile>("{}"), expected);
}

TEST(VeranoxEditableProfile, EachKeyMayBeMissingButNotOfAnotherType)
{
    const QJsonObject full = checks::object(fullDocument).value("Profiles"_L1).toObject().value("acme"_L1).toObject();
    EXPECT_EQ(decodeRecord<VeranoxEditableProfile>(checks::text(full)), acme);
    checks::expectAbsentAndNullAreTheSame<VeranoxEditableProfile>(full);
    checks::expectWrongTypesFail<VeranoxEditableProfile>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxEditableProfile>(full);
}

TEST(VeranoxEditableProfile, AnUnknownIconOrColourIsGuessedFromTheTitle)
{
    const auto look = [](const QByteArray &json) {
        const auto profile = decodeRecord<VeranoxEditableProfile>(json);
        return QStringList{profile.icon, profile.color};
    };
    EXPECT_EQ(look(R"({"DisplayName": "Work VPN", "Icon": "nonsense", "Color": "WORK"})"),
        QStringList({u"briefcase.fill"_s, u"green"_s}));
    EXPECT_EQ(look(R"({"DisplayName": "homeWORKs"})"), QStringList({u"briefcase.fill"_s, u"green"_s}));
    EXPECT_EQ(look(R"({"DisplayName": "Home", "Icon": "Wifi", "Color": "Red"})"),
        QStringList({u"building.2.fill"_s, u"teal"_s}));
    EXPECT_EQ(look(R"({"DisplayName": "Work", "Icon": "star.fill", "Color": "brown"})"),
        QStringList({u"star.fill"_s, u"brown"_s}));
}

TEST(VeranoxEditableConfig, TheFirstDocument)
{
    const auto first = VeranoxEditableConfig::emptyForFirstProfile();
    EXPECT_EQ(first.version, 1);
    EXPECT_EQ(first.router, routerDefaults);
    EXPECT_EQ(first.tailscale, (VeranoxEditableTailscaleConfig{u"tailscale"_s, u"tailscaled"_s}));
    EXPECT_EQ(
        first.paths, (VeranoxEditablePathsConfig{u"~/Library/Application Support/Veranox"_s, u"~/.config/veranox"_s}));
    EXPECT_TRUE(first.profiles.isEmpty());
    EXPECT_EQ(first.security, (VeranoxEditableSecurityConfig{true, false, false, false}));
}

TEST(VeranoxEditableConfig, WritesExactlyItsKeysInOrder)
{
    EXPECT_EQ(encodeRecord(document),
        R"({"Version":3,"Router":{"HTTPProxy":"h","SOCKS5Proxy":"s","PACListen":"p","ProfileHTTPProxyBase":1,)"
        R"("ProfileSOCKS5Base":2,"ProfileUDPPortBase":0,"ProfileHostnameBase":"b","TunnelListenBase":4},)"
        R"("Tailscale":{"TailscaleBin":"ts","TailscaledBin":"tsd"},)"
        R"("Paths":{"AppSupportDir":"~/a","ConfigDir":"~/c"},)"
        R"("Profiles":{"acme":{"DisplayName":"Acme","Icon":"wifi","Color":"pink","Backend":"tailscaled",)"
        R"("Hostname":"h","AuthKeyEnv":"KEY","ControlURL":"https://c","Suffixes":[".a",".b"],"MatchRoot":true,)"
        R"("AcceptRoutes":true,"IPRoutes":["10.0.0.0/8"],"StateDir":"/s","Socket":"/k","HTTPProxy":"hp",)"
        R"("SOCKS5Proxy":"sp","Port":9}},)"
        R"("Security":{"RequireLoopbackListeners":true,"AllowCrossProfileFallback":true,"AllowIPLiterals":true,)"
        R"("AllowUnknownTSNet":true}})");
}

TEST(VeranoxEditableConfig, WritesEveryKeyOfAnEmptyProfileToo)
{
    VeranoxEditableConfig empty = VeranoxEditableConfig::emptyForFirstProfile();
    empty.profiles.insert(u"p"_s, {});
    const QJsonObject written = QJsonDocument::fromJson(encodeRecord(empty)).object();
    EXPECT_EQ(written.value("Profiles"_L1).toObject().value("p"_L1).toObject().size(), 16);
    EXPECT_EQ(written.value("Router"_L1).toObject().size(), 8);
}

TEST(VeranoxEditableConfig, UnknownKeysAreNotSentBack)
{
    const QJsonObject extended = checks::with(checks::object(fullDocument), u"Tunnels"_s, QJsonObject{{u"a"_s, 1}});
    EXPECT_EQ(encodeRecord(decodeRecord<VeranoxEditableConfig>(checks::text(extended))), encodeRecord(document));
}

TEST(VeranoxEditableConfig, IsReadBackAsWritten)
{
    EXPECT_EQ(decodeRecord<VeranoxEditableConfig>(encodeRecord(document)), document);
    const auto first = VeranoxEditableConfig::emptyForFirstProfile();
    EXPECT_EQ(decodeRecord<VeranoxEditableConfig>(encodeRecord(first)), first);
}
