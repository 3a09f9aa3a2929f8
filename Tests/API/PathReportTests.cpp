#include "API/Records/VeranoxPathReport.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray fullNode =
    R"({"host_name": "n", "dns_name": "n.acme.ts.net", "tailscale_ips": ["100.64.0.1"], "online": true})";
const QByteArray fullStatus = R"({"ok": true, "backend_state": "Running", "self": )" + fullNode + '}';
const QByteArray fullDNS = R"({"ok": true, "profile": "acme", "host": "h", "network": "ip4", "addresses": ["a"],
    "error": "e"})";
const QByteArray fullPing = R"({"ok": true, "target": "h", "direct": true, "derp": true, "peer_relay": true,
    "error": "e", "command_duration": "3ms"})";
const QByteArray fullHTTP = R"({"ok": true, "url": "u", "method": "GET", "status": "200 OK", "status_code": 200,
    "content_type": "text/html", "total_ms": 5, "time_to_headers_ms": 3, "time_to_first_body_byte_ms": 4,
    "bytes_read": 9, "error": "e"})";
const QByteArray fullNetcheck = R"({"ok": true, "error": "e"})";
const QByteArray fullReport = R"({"profile": "acme", "profile_backend": "tsnet", "target": "h:1", "host": "h",
    "rule_suffix": ".acme.ts.net", "route_type": "other", "ip_route": "10.0.0.0/8", "profile_socket": "/s",
    "profile_http_proxy": "127.0.0.1:1", "profile_socks5_proxy": "127.0.0.1:2", "profile_udp_port": 3,
    "router_http_proxy": "127.0.0.1:4", "status": )"
    + fullStatus + R"(, "dns": )" + fullDNS + R"(, "ping": )" + fullPing + R"(, "http": )" + fullHTTP
    + R"(, "netcheck": )" + fullNetcheck + R"(, "summary": "s", "recommendations": ["r"]})";

VeranoxPathReport report(const QByteArray &json)
{
    return decodeRecord<VeranoxPathReport>(json);
}

// The report with this at a path such as {"status", "self", "online"}.
QJsonObject with(QJsonObject report, const QStringList &path, const QJsonValue &value)
{
    if (path.size() == 1)
        return checks::with(report, path.first(), value);
    const QJsonObject part = report.value(path.first()).toObject();
    return checks::with(report, path.first(), with(part, path.sliced(1), value));
}

void expectWrongTypesFail(const QJsonObject &report, const QStringList &part, const QByteArray &full)
{
    const QJsonObject fields = checks::object(full);
    for (const QString &key : fields.keys()) {
        for (const QJsonValue &wrong : checks::valuesOfOtherTypes(fields.value(key))) {
            const QStringList path = part + QStringList{key};
            const auto error = checks::failure<VeranoxPathReport>(checks::text(with(report, path, wrong)));
            ASSERT_TRUE(error) << path.join(u'.').toStdString();
            EXPECT_EQ(error->place(), path.join(u'.'));
        }
    }
}

// The report's own failure for a part in which one key is left out.
std::optional<DecodingError> withoutKey(const QString &part, const QByteArray &full, const QString &key)
{
    const QJsonObject broken = checks::without(checks::object(full), key);
    return checks::failure<VeranoxPathReport>(checks::text(QJsonObject{{part, broken}}));
}

} // namespace

TEST(PathReport, ReadsEachKeyIntoItsField)
{
    const VeranoxPathReport expected{
        .profile = u"acme"_s,
        .profileBackend = u"tsnet"_s,
        .target = u"h:1"_s,
        .host = u"h"_s,
        .ruleSuffix = u".acme.ts.net"_s,
        .routeType = u"other"_s,
        .ipRoute = u"10.0.0.0/8"_s,
        .profileSocket = u"/s"_s,
        .profileHTTPProxy = u"127.0.0.1:1"_s,
        .profileSOCKS5Proxy = u"127.0.0.1:2"_s,
        .profileUDPPort = 3,
        .routerHTTPProxy = u"127.0.0.1:4"_s,
        .status = VeranoxPathProfileStatus{.ok = true,
            .backendState = u"Running"_s,
            .selfNode = VeranoxPathSelfNode{.hostName = u"n"_s,
                .dnsName = u"n.acme.ts.net"_s,
                .tailscaleIPs = {u"100.64.0.1"_s},
                .online = true}},
        .dns = VeranoxDNSReport{.ok = true,
            .profile = u"acme"_s,
            .host = u"h"_s,
            .network = u"ip4"_s,
            .addresses = {u"a"_s},
            .error = u"e"_s},
        .ping = VeranoxPingReport{.ok = true,
            .target = u"h"_s,
            .direct = true,
            .derp = true,
            .peerRelay = true,
            .error = u"e"_s,
            .commandDuration = u"3ms"_s},
        .http = VeranoxHTTPReport{.ok = true,
            .url = u"u"_s,
            .method = u"GET"_s,
            .status = u"200 OK"_s,
            .statusCode = 200,
            .contentType = u"text/html"_s,
            .totalMS = 5,
            .timeToHeadersMS = 3,
            .timeToFirstBodyByteMS = 4,
            .bytesRead = 9,
            .error = u"e"_s},
        .netcheck = VeranoxNetcheckReport{.ok = true, .error = u"e"_s},
        .summary = u"s"_s,
        .recommendations = {u"r"_s},
    };
    EXPECT_EQ(report(fullReport), expected);
}

TEST(PathReport, AnEmptyObjectIsAnEmptyReport)
{
    EXPECT_EQ(report("{}"), VeranoxPathReport());
}

TEST(PathReport, EachKeyMayBeMissingButNotOfAnotherType)
{
    const QJsonObject full = checks::object(fullReport);
    checks::expectAbsentAndNullAreTheSame<VeranoxPathReport>(full);
    checks::expectWrongTypesFail<VeranoxPathReport>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxPathReport>(full);
}

TEST(PathReport, WithoutASummaryItIsTheFirstRecommendation)
{
    EXPECT_EQ(report(R"({"recommendations":["x","y"]})").summary, u"x");
    EXPECT_EQ(report(R"({"summary":null,"recommendations":["x"]})").summary, u"x");
    EXPECT_EQ(report(R"({"summary":"","recommendations":["x"]})").summary, u"");
    EXPECT_EQ(report(R"({"recommendations":[]})").summary, u"");
}

TEST(PathReport, WithoutARouteTypeItIsASuffixIfOneMatched)
{
    EXPECT_EQ(report(R"({"rule_suffix":".a"})").routeType, u"suffix");
    EXPECT_EQ(report(R"({"rule_suffix":".a","route_type":"ip_route"})").routeType, u"ip_route");
    EXPECT_EQ(report(R"({"rule_suffix":".a","route_type":""})").routeType, u"");
    EXPECT_EQ(report(R"({"rule_suffix":""})").routeType, u"");
}

TEST(PathReport, ARouteMatchesByAnyOfThreeIfThereIsAProfile)
{
    EXPECT_FALSE(report(R"({"profile":"a"})").routeMatched());
    EXPECT_TRUE(report(R"({"profile":"a","rule_suffix":".a"})").routeMatched());
    EXPECT_TRUE(report(R"({"profile":"a","ip_route":"10.0.0.0/8"})").routeMatched());
    EXPECT_TRUE(report(R"({"profile":"a","route_type":"ip_route"})").routeMatched());
    EXPECT_FALSE(report(R"({"profile":"a","route_type":"suffix"})").routeMatched());
    EXPECT_FALSE(report(R"({"profile":"","route_type":"ip_route"})").routeMatched());
    EXPECT_FALSE(report(R"({"profile":"a","route_matched":true,"routeMatched":true})").routeMatched());
}

TEST(PathReport, APingMustBeComplete)
{
    for (const QString &key : checks::object(fullPing).keys())
        EXPECT_EQ(withoutKey(u"ping"_s, fullPing, key).value().place(), u"ping."_s + key);
}

TEST(PathReport, TheNodeMustBeCompleteAndMayBeAbsent)
{
    for (const QString &key : {u"ok"_s, u"backend_state"_s})
        EXPECT_EQ(withoutKey(u"status"_s, fullStatus, key).value().place(), u"status."_s + key);
    EXPECT_FALSE(withoutKey(u"status"_s, fullStatus, u"self"_s));
    for (const QString &key : checks::object(fullNode).keys()) {
        const QJsonObject node = checks::without(checks::object(fullNode), key);
        const QJsonObject status = checks::with(checks::object(fullStatus), u"self"_s, node);
        const auto error = checks::failure<VeranoxPathReport>(checks::text(QJsonObject{{u"status"_s, status}}));
        EXPECT_EQ(error.value().place(), u"status.self."_s + key);
    }
}

TEST(PathReport, TheOtherPartsReadWhatIsMissingAsNothing)
{
    for (const QString &key : checks::object(fullHTTP).keys())
        EXPECT_FALSE(withoutKey(u"http"_s, fullHTTP, key)) << key.toStdString();
    for (const QString &key : checks::object(fullDNS).keys())
        EXPECT_FALSE(withoutKey(u"dns"_s, fullDNS, key)) << key.toStdString();
    for (const QString &key : checks::object(fullNetcheck).keys())
        EXPECT_FALSE(withoutKey(u"netcheck"_s, fullNetcheck, key)) << key.toStdString();
    EXPECT_EQ(report(R"({"http":{}})").http, VeranoxHTTPReport());
    EXPECT_EQ(report(R"({"dns":{},"netcheck":{}})").dns, VeranoxDNSReport());
    EXPECT_EQ(report(R"({"dns":{},"netcheck":{}})").netcheck, VeranoxNetcheckReport());
}

TEST(PathReport, NoKeyOfAPartMayBeOfAnotherType)
{
    const QJsonObject full = checks::object(fullReport);
    expectWrongTypesFail(full, {u"status"_s}, fullStatus);
    expectWrongTypesFail(full, {u"status"_s, u"self"_s}, fullNode);
    expectWrongTypesFail(full, {u"dns"_s}, fullDNS);
    expectWrongTypesFail(full, {u"ping"_s}, fullPing);
    expectWrongTypesFail(full, {u"http"_s}, fullHTTP);
    expectWrongTypesFail(full, {u"netcheck"_s}, fullNetcheck);
    const auto error = [&](const QStringList &list) {
        const QByteArray text = checks::text(with(full, list, QJsonArray{u"a"_s, 7}));
        return checks::failure<VeranoxPathReport>(text).value().place();
    };
    EXPECT_EQ(error({u"recommendations"_s}), u"recommendations[1]");
    EXPECT_EQ(error({u"dns"_s, u"addresses"_s}), u"dns.addresses[1]");
    EXPECT_EQ(error({u"status"_s, u"self"_s, u"tailscale_ips"_s}), u"status.self.tailscale_ips[1]");
}
