#include "API/Records/VeranoxConfig.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

namespace {

const VeranoxRouterConfig defaults{
    .httpProxy = u"127.0.0.1:43100"_s,
    .socks5Proxy = u"127.0.0.1:43101"_s,
    .pacListen = u"127.0.0.1:43180"_s,
    .profileHTTPProxyBase = 43110,
    .profileSOCKS5ProxyBase = 43111,
    .profileUDPPortBase = 43400,
    .profileHostnameBase = u"veranox"_s,
    .tunnelListenBase = 43300,
};

const VeranoxRouterConfig custom{
    .httpProxy = u"0.0.0.0:1"_s,
    .socks5Proxy = u"nonsense"_s,
    .pacListen = u"localhost:3"_s,
    .profileHTTPProxyBase = 4,
    .profileSOCKS5ProxyBase = 5,
    .profileUDPPortBase = 0,
    .profileHostnameBase = u"base"_s,
    .tunnelListenBase = 7,
};

const QByteArray snakeCase = R"({
    "http_proxy": "0.0.0.0:1", "socks5_proxy": "nonsense", "pac_listen": "localhost:3", "profile_http_proxy_base": 4,
    "profile_socks5_proxy_base": 5, "profile_udp_port_base": 0, "profile_hostname_base": "base",
    "tunnel_listen_base": 7})";

const QByteArray capitalised = R"({
    "HTTPProxy": "0.0.0.0:1", "SOCKS5Proxy": "nonsense", "PACListen": "localhost:3", "ProfileHTTPProxyBase": 4,
    "ProfileSOCKS5Base": 5, "ProfileUDPPortBase": 0, "ProfileHostnameBase": "base", "TunnelListenBase": 7})";

VeranoxRouterConfig router(const QByteArray &json)
{
    return decodeRecord<VeranoxConfig>("{\"router\":" + json + "}").router;
}

} // namespace

TEST(VeranoxConfig, ReadsBothSpellingsOfEachKey)
{
    EXPECT_EQ(router(snakeCase), custom);
    EXPECT_EQ(router(capitalised), custom);
    EXPECT_EQ(decodeRecord<VeranoxConfig>("{\"Router\":" + capitalised + "}").router, custom);
    EXPECT_EQ(decodeRecord<VeranoxConfig>("{\"router\": null, \"Router\":" + snakeCase + "}").router, custom);
}

TEST(VeranoxConfig, WhatIsAbsentTakesTheDefault)
{
    EXPECT_EQ(decodeRecord<VeranoxConfig>("{}").router, defaults);
    EXPECT_EQ(decodeRecord<VeranoxConfig>(R"({"router": null, "Router": null})").router, defaults);
    EXPECT_EQ(router("{}"), defaults);
    EXPECT_EQ(VeranoxRouterConfig::defaults(), defaults);
}

TEST(VeranoxConfig, TheFirstKeyWins)
{
    EXPECT_EQ(decodeRecord<VeranoxConfig>(R"({"router": {}, "Router": )" + snakeCase + "}").router, defaults);
    EXPECT_EQ(router(R"({"http_proxy": null, "HTTPProxy": "127.0.0.1:9"})").httpProxy, u"127.0.0.1:9");
    EXPECT_EQ(router(R"({"http_proxy": "a:1", "HTTPProxy": "127.0.0.1:9"})").httpProxy, u"a:1");
}

TEST(VeranoxConfig, EachCapitalisedKeyGivesWayToItsOther)
{
    const QJsonObject first = checks::object(snakeCase);
    const QJsonObject second = checks::object(R"({
        "HTTPProxy": "x", "SOCKS5Proxy": "x", "PACListen": "x", "ProfileHTTPProxyBase": 99, "ProfileSOCKS5Base": 99,
        "ProfileUDPPortBase": 99, "ProfileHostnameBase": "x", "TunnelListenBase": 99})");
    QJsonObject both = second;
    for (auto entry = first.begin(); entry != first.end(); ++entry)
        both.insert(entry.key(), entry.value());
    EXPECT_EQ(router(checks::text(both)), custom);
}

TEST(VeranoxConfig, AWrongTypeFails)
{
    for (const QByteArray &spelling : {snakeCase, capitalised}) {
        const QJsonObject full = checks::object(spelling);
        for (const QString &key : full.keys()) {
            for (const QJsonValue &wrong : checks::valuesOfOtherTypes(full.value(key))) {
                const QJsonObject document{{u"Router"_s, checks::with(full, key, wrong)}};
                EXPECT_EQ(checks::failure<VeranoxConfig>(checks::text(document)).value().place(), u"Router."_s + key);
            }
        }
    }
    EXPECT_EQ(checks::failure<VeranoxConfig>(R"({"router": []})").value().place(), u"router");
}

TEST(VeranoxConfig, OnlyThePACAddressIsHeldToLoopback)
{
    const auto pac = [](const QByteArray &address) { return router("{\"pac_listen\":\"" + address + "\"}").pacListen; };
    EXPECT_EQ(pac("0.0.0.0:43180"), u"127.0.0.1:43180");
    EXPECT_EQ(pac("garbage"), u"127.0.0.1:43180");
    EXPECT_EQ(pac(""), u"127.0.0.1:43180");
    EXPECT_EQ(pac("127.0.0.1:0"), u"127.0.0.1:43180");
    EXPECT_EQ(pac(" LocalHost:80 "), u"localhost:80");
    EXPECT_EQ(pac("::1:80"), u"[::1]:80");
}
