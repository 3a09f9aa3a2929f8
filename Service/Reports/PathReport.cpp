#include "Service/Reports/PathReport.h"

#include "Service/Config/ProfileDefaults.h"
#include "Service/Profiles/ProfileRecord.h"
#include "Service/Reports/PathProbes.h"
#include <boost/json/array.hpp>
#include <cstdio>

namespace veranox {

namespace asio = boost::asio;
namespace json = boost::json;

namespace {

struct Findings {
    std::string profile;
    std::string title; // of the profile, for people
    NodeStatus node;
    std::string dnsError;
    PingResult ping;
    HttpResult http;
};

struct Verdict {
    std::string summary;
    std::vector<std::string> recommendations;
};

std::string quoted(const std::string &text)
{
    return "\"" + text + "\"";
}

std::string milliseconds(std::chrono::microseconds time)
{
    constexpr double perMillisecond = 1000;
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%.3gms", static_cast<double>(time.count()) / perMillisecond);
    return {text, static_cast<std::size_t>(length)};
}

json::object emptyReport(const PathQuestion &question, const std::string &host, const ConfigDocument &document)
{
    return {{"profile", ""}, {"profile_backend", ""}, {"target", question.target}, {"host", host}, {"rule_suffix", ""},
        {"route_type", ""}, {"ip_route", ""}, {"profile_socket", ""}, {"profile_http_proxy", ""},
        {"profile_socks5_proxy", ""}, {"profile_udp_port", 0}, {"router_http_proxy", document.router.httpProxy},
        {"status", nullptr}, {"dns", nullptr}, {"ping", nullptr}, {"http", nullptr}, {"netcheck", nullptr},
        {"summary", ""}, {"recommendations", json::array()}};
}

void conclude(json::object &report, Verdict verdict)
{
    report["summary"] = verdict.summary;
    report["recommendations"] = json::array(verdict.recommendations.begin(), verdict.recommendations.end());
}

void describeRoute(
    json::object &report, const ConfigDocument &document, const PathRoute &route, const NodeStatus &status)
{
    const json::object record = profileRecord(document, route.profile, status);
    report["profile"] = record.at("name");
    report["profile_backend"] = record.at("backend");
    report["rule_suffix"] = route.suffix;
    report["route_type"] = route.suffix.empty() ? "ip_route" : "suffix";
    report["ip_route"] = route.ipRoute;
    report["profile_socket"] = record.at("socket");
    report["profile_http_proxy"] = record.at("http_proxy");
    report["profile_socks5_proxy"] = record.at("socks5_proxy");
    if (record.at("udp_port").is_number())
        report["profile_udp_port"] = record.at("udp_port");
}

json::object statusRecord(const Findings &found, const NodeNames &names)
{
    return {{"ok", found.node.ok}, {"backend_state", found.node.backendState},
        {"self",
            json::object{{"host_name", names.hostName}, {"dns_name", names.dnsName},
                {"tailscale_ips", json::array(names.addresses.begin(), names.addresses.end())},
                {"online", found.node.ok}}}};
}

json::object pingRecord(const Findings &found, const PathTarget &target)
{
    return {{"ok", found.ping.ok}, {"target", target.host + ":" + std::to_string(target.port)},
        {"direct", found.ping.ok}, {"derp", false}, {"peer_relay", false}, {"error", found.ping.error},
        {"command_duration", milliseconds(found.ping.took)}};
}

json::object httpRecord(const HttpResult &http)
{
    return {{"ok", http.ok}, {"url", http.url}, {"method", "GET"}, {"status", http.status},
        {"status_code", http.statusCode}, {"content_type", http.contentType}, {"total_ms", http.total.count()},
        {"time_to_headers_ms", http.toHeaders.count()}, {"time_to_first_body_byte_ms", http.toFirstByte.count()},
        {"bytes_read", http.bytesRead}, {"error", http.error}};
}

Verdict verdictOnNode(const Findings &found, const std::string &host)
{
    const std::string begin = host + " belongs to profile " + quoted(found.title);
    if (found.node.backendState == "NeedsLogin")
        return {
            begin + ", which is not signed in.", {"Sign in to profile " + quoted(found.title) + ", then try again."}};
    if (found.node.backendState == "NeedsMachineAuth")
        return {begin + ", which waits for an admin's approval.",
            {"Ask an admin of the tailnet to approve this computer, then try again."}};
    if (found.node.backendState == "Stopped")
        return {begin + ", whose node is not running: " + found.node.error,
            {"Mend what the node complains about, or sign in again."}};
    return {begin + ", whose node is still starting.", {"Wait some seconds and try again."}};
}

Verdict verdictOnTarget(const Findings &found, const PathTarget &target)
{
    const std::string profile = "profile " + quoted(found.title);
    if (!found.dnsError.empty())
        return {found.dnsError,
            {"Check the spelling of the host, and whether it is a device of the tailnet of " + profile + "."}};
    if (!found.ping.ok)
        return {found.ping.error,
            {"Check that the service on " + target.host + " runs and listens on port " + std::to_string(target.port)
                    + ".",
                "Check that the access policy of the tailnet lets this computer connect to it."}};
    const std::string takes =
        target.host + " takes connections on port " + std::to_string(target.port) + " through " + profile;
    const std::string answers = takes + " and answers HTTP with " + found.http.status;
    if (found.http.ok && !found.http.certificateProblem.empty())
        return {answers + ", but this computer does not trust its certificate: " + found.http.certificateProblem + ".",
            {"Expect programs to warn of " + target.host
                + " or to refuse it, until it has a certificate that is "
                  "trusted here and of its name."}};
    if (found.http.ok)
        return {answers + ".", {}};
    if (target.scheme == "http" || target.scheme == "https")
        return {takes + ", but gave no page: " + found.http.error,
            {"Check the service on " + target.host + "; the way to it is fine."}};
    return {takes + ".", {}};
}

} // namespace

asio::awaitable<json::object> makePathReport(
    NodeEngine *nodes, std::shared_ptr<const RouteTable> routes, PathQuestion question)
{
    const ConfigDocument &document = routes->document();
    const std::optional<PathTarget> target = parsePathTarget(question.target);
    json::object report = emptyReport(question, target ? target->host : "", document);
    if (!target) {
        conclude(report,
            {"The target holds no host that can be tried.",
                {"Give a URL, host:port, a host name or an address, for example wiki.example.ts.net."}});
        co_return report;
    }
    const std::optional<PathRoute> route = routes->find(target->host);
    if (!route) {
        conclude(report,
            {"No profile owns " + target->host + ", so it is not reached through a tailnet.",
                {"Add a suffix of this host, or a range that holds its address, to the profile that should carry "
                 "it."}});
        co_return report;
    }
    const auto &[name, settings] = document.profiles[route->profile];
    Findings found{.profile = name,
        .title = settings.displayName.empty() ? name : settings.displayName,
        .node = nodes->profileStatus(name),
        .dnsError = nodes->hostProblem(name, target->host),
        .ping = {},
        .http = {}};
    describeRoute(report, document, *route, found.node);
    report["status"] = statusRecord(found, nodes->nodeNames(name, nodeHostname(document, name)));
    if (question.netcheck)
        report["netcheck"] = json::object{{"ok", found.node.ok}, {"error", found.node.error}};
    if (!found.node.ok) {
        conclude(report, verdictOnNode(found, target->host));
        co_return report;
    }
    const std::vector<std::string> addresses = nodes->resolve(name, target->host);
    report["dns"] = json::object{{"ok", found.dnsError.empty()}, {"profile", name}, {"host", target->host},
        {"network", "ip"}, {"addresses", json::array(addresses.begin(), addresses.end())}, {"error", found.dnsError}};
    if (found.dnsError.empty()) {
        found.ping = co_await ping(nodes, name, *target, question.pingCount);
        report["ping"] = pingRecord(found, *target);
    }
    if (found.ping.ok) {
        found.http = co_await probeHttp(nodes, name, *target);
        report["http"] = httpRecord(found.http);
    }
    conclude(report, verdictOnTarget(found, *target));
    co_return report;
}

} // namespace veranox
