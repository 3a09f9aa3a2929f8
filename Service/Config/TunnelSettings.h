#pragma once
#include "Service/Json/JsonReader.h"
#include <optional>
#include <string>

namespace veranox {

/// The bastion through which a tunnel goes. The password of an account is never here.
struct TunnelSSHSettings {
    std::string bastion;
    std::string user;
    std::string auth = "agent"; // "agent", "key" or "password"
    std::string identityFile;

    bool operator==(const TunnelSSHSettings &) const = default;
};

/// A tunnel as the configuration keeps it: a fixed local port, forwarded through one profile.
struct TunnelSettings {
    std::string displayName;
    std::string profile;
    std::string mode = "native"; // "native" or "ssh"
    std::string listen; // host:port on loopback; empty until the service has picked one
    std::string target; // host:port
    std::optional<TunnelSSHSettings> ssh;
    bool disabled = false;

    bool operator==(const TunnelSettings &) const = default;
};

/// Throws JsonProblem at the first member that is missing or wrong.
TunnelSettings readTunnel(JsonReader reader);
boost::json::object toJson(const TunnelSettings &tunnel);

} // namespace veranox
