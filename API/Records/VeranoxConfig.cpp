#include "API/Records/VeranoxConfig.h"
#include "API/Values/VeranoxLoopback.h"
#include "Base/Json/Codec.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto defaultPACListen = "127.0.0.1:43180";

}

template <> struct json::Layout<VeranoxRouterConfig> {
    using Router = VeranoxRouterConfig;
    static constexpr std::tuple fields{
        field({"http_proxy", "HTTPProxy"}, &Router::httpProxy, "127.0.0.1:43100"),
        field({"socks5_proxy", "SOCKS5Proxy"}, &Router::socks5Proxy, "127.0.0.1:43101"),
        field({"pac_listen", "PACListen"}, &Router::pacListen, defaultPACListen),
        field({"profile_http_proxy_base", "ProfileHTTPProxyBase"}, &Router::profileHTTPProxyBase, 43110),
        field({"profile_socks5_proxy_base", "ProfileSOCKS5Base"}, &Router::profileSOCKS5ProxyBase, 43111),
        field({"profile_udp_port_base", "ProfileUDPPortBase"}, &Router::profileUDPPortBase, 43400),
        field({"profile_hostname_base", "ProfileHostnameBase"}, &Router::profileHostnameBase, "veranox"),
        field({"tunnel_listen_base", "TunnelListenBase"}, &Router::tunnelListenBase, 43300),
    };

    // The application fetches and hands out this address, so one that is not on loopback is not believed.
    static void complete(Router &router)
    {
        router.pacListen = VeranoxLoopback::normalizedAddress(router.pacListen, u"PAC server"_s)
                               .value_or(QString::fromLatin1(defaultPACListen));
    }
};

template <> struct json::Layout<VeranoxConfig> {
    static constexpr std::tuple fields{
        field({"router", "Router"}, &VeranoxConfig::router),
    };
};

VeranoxRouterConfig VeranoxRouterConfig::defaults()
{
    return json::blank<VeranoxRouterConfig>();
}

template VeranoxConfig decodeRecord(const QByteArray &);
