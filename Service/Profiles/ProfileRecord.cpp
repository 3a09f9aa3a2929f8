#include "Service/Profiles/ProfileRecord.h"

#include "Service/Text/Timestamps.h"
#include <boost/json/array.hpp>

namespace veranox {

namespace json = boost::json;

namespace {

std::string configuredOr(const std::string &configured, const std::string &assigned)
{
    return configured.empty() ? assigned : configured;
}

/// HTTP and SOCKS5 ports of the profiles alternate from their bases, which by default are neighbours.
std::string assignedProxy(std::int64_t base, std::size_t index)
{
    return "127.0.0.1:" + std::to_string(base + 2 * static_cast<std::int64_t>(index));
}

json::object statusRecord(const NodeStatus &status)
{
    return {{"ok", status.ok}, {"backend_state", status.backendState}, {"raw", status.raw}, {"error", status.error},
        {"checked_at", timestamp(status.since)}};
}

} // namespace

std::string nodeHostname(const ConfigDocument &document, const std::string &profile)
{
    const ProfileSettings *settings = findNamed(document.profiles, profile);
    return configuredOr(settings ? settings->hostname : "", document.router.profileHostnameBase + "-" + profile);
}

ProfileProxies profileProxies(const ConfigDocument &document, std::size_t index)
{
    const ProfileSettings &profile = document.profiles.at(index).second;
    return {.http = configuredOr(profile.httpProxy, assignedProxy(document.router.profileHTTPProxyBase, index)),
        .socks5 = configuredOr(profile.socks5Proxy, assignedProxy(document.router.profileSOCKS5ProxyBase, index))};
}

std::int64_t profileUDPPort(const ConfigDocument &document, std::size_t index)
{
    const std::int64_t configured = document.profiles.at(index).second.port;
    const std::int64_t base = document.router.profileUDPPortBase;
    if (configured > 0)
        return configured;
    return base > 0 ? base + static_cast<std::int64_t>(index) : 0;
}

json::object profileRecord(const ConfigDocument &document, std::size_t index, const NodeStatus &status)
{
    const auto &[name, profile] = document.profiles.at(index);
    const ProfileProxies proxies = profileProxies(document, index);
    const std::int64_t udpPort = profileUDPPort(document, index);
    return {{"name", name}, {"display_name", configuredOr(profile.displayName, name)}, {"icon", profile.icon},
        {"color", profile.color}, {"hostname", nodeHostname(document, name)}, {"backend", profile.backend},
        {"suffixes", json::array(profile.suffixes.begin(), profile.suffixes.end())}, {"match_root", profile.matchRoot},
        {"ip_routes", json::array(profile.ipRoutes.begin(), profile.ipRoutes.end())}, {"state_dir", profile.stateDir},
        {"socket", profile.socket}, {"http_proxy", proxies.http}, {"socks5_proxy", proxies.socks5},
        {"udp_port", udpPort > 0 ? json::value(udpPort) : json::value(nullptr)}, {"status", statusRecord(status)}};
}

} // namespace veranox
