#include "API/Records/VeranoxPathReport.h"
#include "Base/Json/Codec.h"

using namespace Qt::StringLiterals;

template <> struct json::Layout<VeranoxPathSelfNode> {
    using Node = VeranoxPathSelfNode;
    static constexpr std::tuple fields{
        required("host_name", &Node::hostName),
        required("dns_name", &Node::dnsName),
        required("tailscale_ips", &Node::tailscaleIPs),
        required("online", &Node::online),
    };
};

template <> struct json::Layout<VeranoxPathProfileStatus> {
    using Status = VeranoxPathProfileStatus;
    static constexpr std::tuple fields{
        required("ok", &Status::ok),
        required("backend_state", &Status::backendState),
        field("self", &Status::selfNode),
    };
};

template <> struct json::Layout<VeranoxDNSReport> {
    using DNS = VeranoxDNSReport;
    static constexpr std::tuple fields{
        field("ok", &DNS::ok, false),
        field("profile", &DNS::profile, ""),
        field("host", &DNS::host, ""),
        field("network", &DNS::network, ""),
        field("addresses", &DNS::addresses),
        field("error", &DNS::error, ""),
    };
};

// A service sends all of a ping, an empty error too.
template <> struct json::Layout<VeranoxPingReport> {
    using Ping = VeranoxPingReport;
    static constexpr std::tuple fields{
        required("ok", &Ping::ok),
        required("target", &Ping::target),
        required("direct", &Ping::direct),
        required("derp", &Ping::derp),
        required("peer_relay", &Ping::peerRelay),
        required("error", &Ping::error),
        required("command_duration", &Ping::commandDuration),
    };
};

template <> struct json::Layout<VeranoxHTTPReport> {
    using HTTP = VeranoxHTTPReport;
    static constexpr std::tuple fields{
        field("ok", &HTTP::ok, false),
        field("url", &HTTP::url, ""),
        field("method", &HTTP::method, ""),
        field("status", &HTTP::status, ""),
        field("status_code", &HTTP::statusCode, 0),
        field("content_type", &HTTP::contentType, ""),
        field("total_ms", &HTTP::totalMS, 0),
        field("time_to_headers_ms", &HTTP::timeToHeadersMS, 0),
        field("time_to_first_body_byte_ms", &HTTP::timeToFirstBodyByteMS, 0),
        field("bytes_read", &HTTP::bytesRead, 0),
        field("error", &HTTP::error, ""),
    };
};

template <> struct json::Layout<VeranoxNetcheckReport> {
    static constexpr std::tuple fields{
        field("ok", &VeranoxNetcheckReport::ok, false),
        field("error", &VeranoxNetcheckReport::error, ""),
    };
};

namespace {

QString routeTypeByRule(const VeranoxPathReport &report)
{
    return report.ruleSuffix.isEmpty() ? QString() : u"suffix"_s;
}

QString firstRecommendation(const VeranoxPathReport &report)
{
    return report.recommendations.value(0);
}

} // namespace

template <> struct json::Layout<VeranoxPathReport> {
    using Report = VeranoxPathReport;
    static constexpr std::tuple fields{
        field("profile", &Report::profile, ""), field("profile_backend", &Report::profileBackend, ""),
        field("target", &Report::target, ""), field("host", &Report::host, ""),
        field("rule_suffix", &Report::ruleSuffix, ""), field("route_type", &Report::routeType, routeTypeByRule),
        field("ip_route", &Report::ipRoute, ""), field("profile_socket", &Report::profileSocket, ""),
        field("profile_http_proxy", &Report::profileHTTPProxy, ""),
        field("profile_socks5_proxy", &Report::profileSOCKS5Proxy, ""),
        field("profile_udp_port", &Report::profileUDPPort, 0), field("router_http_proxy", &Report::routerHTTPProxy, ""),
        field("status", &Report::status), field("dns", &Report::dns), field("ping", &Report::ping),
        field("http", &Report::http), field("netcheck", &Report::netcheck),
        field("recommendations", &Report::recommendations),
        field("summary", &Report::summary, firstRecommendation), // after what it defaults to
    };
};

bool VeranoxPathReport::routeMatched() const
{
    return !profile.isEmpty() && (!ruleSuffix.isEmpty() || !ipRoute.isEmpty() || routeType == "ip_route"_L1);
}

template VeranoxPathReport decodeRecord(const QByteArray &);
