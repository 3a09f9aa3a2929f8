#pragma once
#include "Service/Config/ProfileSettings.h"
#include "Service/Config/PublicationSettings.h"
#include "Service/Config/TunnelSettings.h"
#include "Service/Text/NamedList.h"
#include <boost/json/object.hpp>
#include <cstdint>
#include <string>

namespace veranox {

/// The addresses and first ports of everything that listens on loopback.
struct RouterSettings {
    std::string httpProxy = "127.0.0.1:43100";
    std::string socks5Proxy = "127.0.0.1:43101";
    std::string pacListen = "127.0.0.1:43180";
    std::int64_t profileHTTPProxyBase = 43110;
    std::int64_t profileSOCKS5ProxyBase = 43111;
    std::int64_t profileUDPPortBase = 43400; // 0: the system picks
    std::string profileHostnameBase = "veranox";
    std::int64_t tunnelListenBase = 43300;

    bool operator==(const RouterSettings &) const = default;
};

/// The commands for the two Tailscale programs.
struct TailscaleSettings {
    std::string tailscaleBin = "tailscale";
    std::string tailscaledBin = "tailscaled";

    bool operator==(const TailscaleSettings &) const = default;
};

/// Kept as written, a leading tilde included.
struct PathSettings {
    std::string appSupportDir = "~/Library/Application Support/Veranox";
    std::string configDir = "~/.config/veranox";

    bool operator==(const PathSettings &) const = default;
};

struct SecuritySettings {
    bool requireLoopbackListeners = true;
    bool allowCrossProfileFallback = false;
    bool allowIPLiterals = false;
    bool allowUnknownTSNet = false;

    bool operator==(const SecuritySettings &) const = default;
};

/// Everything about routing. A new one is the configuration of a computer without a profile.
struct ConfigDocument {
    static constexpr std::int64_t currentVersion = 1;

    RouterSettings router;
    TailscaleSettings tailscale;
    PathSettings paths;
    NamedList<ProfileSettings> profiles;
    SecuritySettings security;
    NamedList<TunnelSettings> tunnels;
    NamedList<PublicationSettings> publications;
    /// The file as it was read. What it holds beyond the above goes back into the file unchanged.
    boost::json::object asRead;

    bool operator==(const ConfigDocument &) const = default;
};

/// Reads the document from the text of its file. Throws JsonProblem.
ConfigDocument parseConfig(std::string_view text);

/// The same from JSON that has been read already.
ConfigDocument readConfig(const boost::json::value &value);

/// What the file is to hold: the whole document, tunnels and publications included, and what was read beyond it.
boost::json::object configFile(const ConfigDocument &document);
/// The text of that file.
std::string configFileText(const ConfigDocument &document);

/// The document as the control API gives it: the six sections, without tunnels and publications, which have endpoints
/// of their own.
boost::json::object configRecord(const ConfigDocument &document);

/// Gives every tunnel without a local address the next free port from the base on, so that it stays the same for good.
/// A port is free when nothing in the document uses it and it is not that of the control API. True when there was one.
bool assignTunnelAddresses(ConfigDocument &document, std::uint16_t controlPort);

} // namespace veranox
