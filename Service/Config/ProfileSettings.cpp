#include "Service/Config/ProfileSettings.h"

#include <boost/json/array.hpp>

namespace veranox {

namespace json = boost::json;

ProfileSettings readProfile(JsonReader reader)
{
    return {.displayName = reader.text("DisplayName", ""),
        .icon = reader.text("Icon", ""),
        .color = reader.text("Color", ""),
        .backend = reader.word("Backend", {"tsnet", "tailscaled"}, "tsnet"),
        .hostname = reader.text("Hostname", ""),
        .authKeyEnv = reader.text("AuthKeyEnv", ""),
        .controlURL = reader.text("ControlURL", ""),
        .suffixes = reader.texts("Suffixes"),
        .matchRoot = reader.flag("MatchRoot", false),
        .acceptRoutes = reader.flag("AcceptRoutes", false),
        .ipRoutes = reader.texts("IPRoutes"),
        .stateDir = reader.text("StateDir", ""),
        .socket = reader.text("Socket", ""),
        .httpProxy = reader.text("HTTPProxy", ""),
        .socks5Proxy = reader.text("SOCKS5Proxy", ""),
        .port = reader.number("Port", portOrNoneRange, 0)};
}

json::object toJson(const ProfileSettings &profile)
{
    return {{"DisplayName", profile.displayName}, {"Icon", profile.icon}, {"Color", profile.color},
        {"Backend", profile.backend}, {"Hostname", profile.hostname}, {"AuthKeyEnv", profile.authKeyEnv},
        {"ControlURL", profile.controlURL}, {"Suffixes", json::array(profile.suffixes.begin(), profile.suffixes.end())},
        {"MatchRoot", profile.matchRoot}, {"AcceptRoutes", profile.acceptRoutes},
        {"IPRoutes", json::array(profile.ipRoutes.begin(), profile.ipRoutes.end())}, {"StateDir", profile.stateDir},
        {"Socket", profile.socket}, {"HTTPProxy", profile.httpProxy}, {"SOCKS5Proxy", profile.socks5Proxy},
        {"Port", profile.port}};
}

} // namespace veranox
