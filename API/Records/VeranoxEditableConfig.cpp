#include "API/Records/VeranoxEditableConfig.h"
#include "API/Values/VeranoxProfileAppearance.h"
#include "Base/Json/Codec.h"

using namespace Qt::StringLiterals;

template <> struct json::Layout<VeranoxEditableProfile> {
    using Profile = VeranoxEditableProfile;
    static constexpr std::tuple fields{
        field("DisplayName", &Profile::displayName, ""),
        field("Icon", &Profile::icon, ""),
        field("Color", &Profile::color, ""),
        field("Backend", &Profile::backend, "tsnet"),
        field("Hostname", &Profile::hostname, ""),
        field("AuthKeyEnv", &Profile::authKeyEnv, ""),
        field("ControlURL", &Profile::controlURL, ""),
        field("Suffixes", &Profile::suffixes),
        field("MatchRoot", &Profile::matchRoot, false),
        field("AcceptRoutes", &Profile::acceptRoutes, false),
        field("IPRoutes", &Profile::ipRoutes),
        field("StateDir", &Profile::stateDir, ""),
        field("Socket", &Profile::socket, ""),
        field("HTTPProxy", &Profile::httpProxy, ""),
        field("SOCKS5Proxy", &Profile::socks5Proxy, ""),
        field("Port", &Profile::port, 0),
    };

    // A profile saved before icons existed gets one by its title, and the next save writes it.
    static void complete(Profile &profile)
    {
        profile.icon = VeranoxProfileAppearance::knownIcon(profile.icon, profile.displayName);
        profile.color = VeranoxProfileAppearance::knownColor(profile.color, profile.displayName);
    }
};

template <> struct json::Layout<VeranoxEditableRouterConfig> {
    using Router = VeranoxEditableRouterConfig;
    static constexpr std::tuple fields{
        field("HTTPProxy", &Router::httpProxy, "127.0.0.1:43100"),
        field("SOCKS5Proxy", &Router::socks5Proxy, "127.0.0.1:43101"),
        field("PACListen", &Router::pacListen, "127.0.0.1:43180"),
        field("ProfileHTTPProxyBase", &Router::profileHTTPProxyBase, 43110),
        field("ProfileSOCKS5Base", &Router::profileSOCKS5ProxyBase, 43111),
        field("ProfileUDPPortBase", &Router::profileUDPPortBase, 43400),
        field("ProfileHostnameBase", &Router::profileHostnameBase, "veranox"),
        field("TunnelListenBase", &Router::tunnelListenBase, 43300),
    };
};

template <> struct json::Layout<VeranoxEditableTailscaleConfig> {
    static constexpr std::tuple fields{
        required("TailscaleBin", &VeranoxEditableTailscaleConfig::tailscaleBin),
        required("TailscaledBin", &VeranoxEditableTailscaleConfig::tailscaledBin),
    };
};

template <> struct json::Layout<VeranoxEditablePathsConfig> {
    static constexpr std::tuple fields{
        required("AppSupportDir", &VeranoxEditablePathsConfig::appSupportDir),
        required("ConfigDir", &VeranoxEditablePathsConfig::configDir),
    };
};

template <> struct json::Layout<VeranoxEditableSecurityConfig> {
    using Security = VeranoxEditableSecurityConfig;
    static constexpr std::tuple fields{
        required("RequireLoopbackListeners", &Security::requireLoopbackListeners),
        required("AllowCrossProfileFallback", &Security::allowCrossProfileFallback),
        required("AllowIPLiterals", &Security::allowIPLiterals),
        required("AllowUnknownTSNet", &Security::allowUnknownTSNet),
    };
};

template <> struct json::Layout<VeranoxEditableConfig> {
    static constexpr std::tuple fields{
        required("Version", &VeranoxEditableConfig::version),
        required("Router", &VeranoxEditableConfig::router),
        required("Tailscale", &VeranoxEditableConfig::tailscale),
        required("Paths", &VeranoxEditableConfig::paths),
        required("Profiles", &VeranoxEditableConfig::profiles),
        required("Security", &VeranoxEditableConfig::security),
    };
};

VeranoxEditableRouterConfig VeranoxEditableRouterConfig::defaults()
{
    return json::blank<VeranoxEditableRouterConfig>();
}

VeranoxEditableConfig VeranoxEditableConfig::emptyForFirstProfile()
{
    return {
        .version = 1,
        .router = VeranoxEditableRouterConfig::defaults(),
        .tailscale = {.tailscaleBin = u"tailscale"_s, .tailscaledBin = u"tailscaled"_s},
        .paths = {.appSupportDir = u"~/Library/Application Support/Veranox"_s, .configDir = u"~/.config/veranox"_s},
        .profiles = {},
        .security = {.requireLoopbackListeners = true},
    };
}

template VeranoxEditableProfile decodeRecord(const QByteArray &);
template VeranoxEditableConfig decodeRecord(const QByteArray &);
template QByteArray encodeRecord(const VeranoxEditableConfig &);
