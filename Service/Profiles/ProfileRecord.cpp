#include "Service/Profiles/ProfileRecord.h"

#include "Service/Config/ProfileDefaults.h"
#include "Service/Text/Timestamps.h"
#include <boost/json/array.hpp>

namespace veranox {

namespace json = boost::json;

namespace {

json::object statusRecord(const NodeStatus &status)
{
    return {{"ok", status.ok}, {"backend_state", status.backendState}, {"raw", status.raw}, {"error", status.error},
        {"checked_at", timestamp(status.since)}};
}

} // namespace

json::object profileRecord(const ConfigDocument &document, std::size_t index, const NodeStatus &status)
{
    const auto &[name, profile] = document.profiles.at(index);
    const ProfileProxies proxies = profileProxies(document, index);
    const std::int64_t udpPort = profileUDPPort(document, index);
    return {{"name", name}, {"display_name", profile.displayName.empty() ? name : profile.displayName},
        {"icon", profile.icon}, {"color", profile.color}, {"hostname", nodeHostname(document, name)},
        {"backend", profile.backend}, {"suffixes", json::array(profile.suffixes.begin(), profile.suffixes.end())},
        {"match_root", profile.matchRoot}, {"ip_routes", json::array(profile.ipRoutes.begin(), profile.ipRoutes.end())},
        {"state_dir", profile.stateDir}, {"socket", profile.socket}, {"http_proxy", proxies.http},
        {"socks5_proxy", proxies.socks5}, {"udp_port", udpPort > 0 ? json::value(udpPort) : json::value(nullptr)},
        {"status", statusRecord(status)}};
}

} // namespace veranox
