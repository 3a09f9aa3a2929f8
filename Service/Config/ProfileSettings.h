#pragma once
#include "Service/Json/JsonReader.h"
#include <cstdint>
#include <string>
#include <vector>

namespace veranox {

/// A profile as the configuration keeps it: one node on one tailnet and what is routed through it.
struct ProfileSettings {
    std::string displayName;
    std::string icon;
    std::string color;
    std::string backend = "tsnet"; // "tsnet" or "tailscaled"
    std::string hostname; // empty: derived from the hostname base and the profile's name
    std::string authKeyEnv;
    std::string controlURL;
    std::vector<std::string> suffixes;
    bool matchRoot = false;
    bool acceptRoutes = false;
    std::vector<std::string> ipRoutes;
    std::string stateDir;
    std::string socket;
    std::string httpProxy; // empty: assigned from the base
    std::string socks5Proxy; // empty: assigned from the base
    std::int64_t port = 0; // UDP; 0: assigned from the base

    bool operator==(const ProfileSettings &) const = default;
};

/// Throws JsonProblem at the first member that is wrong. Every member may be missing.
ProfileSettings readProfile(JsonReader reader);
boost::json::object toJson(const ProfileSettings &profile);

} // namespace veranox
