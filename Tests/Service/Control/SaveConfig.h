#pragma once
#include "Service/Json/JsonText.h"
#include "Tests/Service/Support/ApiBed.h"
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace veranox::test::save_config {

namespace json = boost::json;

/// The file of a service that has been in use for a while, with keys of a newer one in it.
inline constexpr std::string_view file = R"({
    "Version": 1, "Router": {}, "Future": [1, 2],
    "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false, "Extra": 7},
    "Profiles": {
        "work": {"DisplayName": "Work", "Suffixes": [".work.ts.net"], "IPRoutes": ["10.0.0.0/8"], "Note": "mine"},
        "home": {"DisplayName": "Home", "Suffixes": [".home.ts.net"]}},
    "Tunnels": {"db": {"Profile": "work", "Target": "db:5432", "Listen": "127.0.0.1:43300"}},
    "Publications": {"web": {"Profile": "home", "Target": "127.0.0.1:8080", "Port": 443, "Reach": "tailnet"}}})";

inline constexpr std::string_view path = "/api/config?force=true";

class SaveConfig : public ::testing::Test {
protected:
    /// What the service gives out, for a test to change and send back.
    json::object document() { return bed.ask("GET", "/api/config").body.as_object(); }
    ControlAnswer save(const json::value &body, const std::string &target = std::string(path))
    {
        return bed.ask("POST", target, json::serialize(body));
    }
    json::object onDisk() const { return parseJson(bed.folder().read("config.json")).as_object(); }

    ApiBed bed{file};
};

} // namespace veranox::test::save_config
