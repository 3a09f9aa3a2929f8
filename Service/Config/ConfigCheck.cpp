#include "Service/Config/ConfigCheck.h"

#include "Service/Config/PortPlan.h"
#include "Service/Config/ProfileCheck.h"
#include "Service/Config/ProfileDefaults.h"
#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Text/Refusal.h"
#include <algorithm>
#include <set>
#include <stdexcept>

namespace veranox {

namespace {

constexpr std::int64_t lastPort = 65535;

[[noreturn]] void refuse(const std::string &sentence)
{
    throw Refusal(Refusal::Kind::badInput, sentence);
}

void checkAddress(const std::string &key, const std::string &address)
{
    try {
        parseLoopbackEndpoint(address, 1);
    } catch (const std::invalid_argument &problem) {
        refuse(key + " " + problem.what() + ".");
    }
}

void checkHostnameBase(const std::string &base)
{
    constexpr std::size_t longestLabel = 63;
    const auto isAllowed = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-'; };
    if (base.empty() || base.size() > longestLabel || base.starts_with('-') || base.ends_with('-')
        || !std::ranges::all_of(base, isAllowed))
        refuse("Router.ProfileHostnameBase must be 1 to 63 lowercase letters, numbers or hyphens, and cannot start or "
               "end with a hyphen.");
}

/// The addresses and bases as they stand, whatever is made of the bases later. Ports for UDP count too, so that a
/// number means one thing.
void checkRouterPorts(const RouterSettings &router, std::uint16_t controlPort)
{
    const PortUse uses[] = {{controlPort, "the control API"}, {portOf(router.httpProxy), "Router.HTTPProxy"},
        {portOf(router.socks5Proxy), "Router.SOCKS5Proxy"}, {portOf(router.pacListen), "Router.PACListen"},
        {router.profileHTTPProxyBase, "Router.ProfileHTTPProxyBase"},
        {router.profileSOCKS5ProxyBase, "Router.ProfileSOCKS5Base"},
        {router.tunnelListenBase, "Router.TunnelListenBase"}, {router.profileUDPPortBase, "Router.ProfileUDPPortBase"}};
    std::vector<PortUse> seen;
    for (const PortUse &use : uses) {
        if (use.port == 0)
            continue; // the system picks
        if (const PortUse *other = findUse(seen, use.port))
            refuse(use.by + " uses port " + std::to_string(use.port) + ", which is already assigned to " + other->by
                + ".");
        seen.push_back(use);
    }
}

/// Every profile has ports of its own, within what there is.
void checkProfilePorts(const ConfigDocument &document)
{
    std::set<std::int64_t> udpPorts;
    for (std::size_t i = 0; i < document.profiles.size(); ++i) {
        const std::string of = " of profile \"" + document.profiles[i].first + "\"";
        const ProfileProxies proxies = profileProxies(document, i);
        const std::int64_t udpPort = profileUDPPort(document, i);
        if (portOf(proxies.http) == 0 || portOf(proxies.socks5) == 0 || udpPort > lastPort)
            refuse("There are too many profiles for the base ports: the ports" + of + " would lie beyond 65535.");
        if (udpPort > 0 && !udpPorts.insert(udpPort).second)
            refuse("The UDP port" + of + " would be " + std::to_string(udpPort)
                + ", which is already assigned to another profile.");
    }
}

/// Among the router's listeners, and between them and the tunnels; two tunnels at one address are the tunnels' matter.
void checkListeners(const ConfigDocument &document, std::uint16_t controlPort)
{
    std::vector<PortUse> seen = tunnelPorts(document);
    for (const PortUse &published : publishedPorts(document))
        seen.push_back(published);
    for (const PortUse &use : routerPorts(document, controlPort)) {
        if (const PortUse *other = findUse(seen, use.port))
            refuse("Port " + std::to_string(use.port) + " of " + use.by + " is already assigned to " + other->by + ".");
        seen.push_back(use);
    }
}

} // namespace

void checkConfig(const ConfigDocument &document, std::uint16_t controlPort)
{
    checkProfiles(document.profiles);
    checkClaims(document.profiles);
    const RouterSettings &router = document.router;
    checkAddress("Router.HTTPProxy", router.httpProxy);
    checkAddress("Router.SOCKS5Proxy", router.socks5Proxy);
    checkAddress("Router.PACListen", router.pacListen);
    checkHostnameBase(router.profileHostnameBase);
    checkRouterPorts(router, controlPort);
    checkProfilePorts(document);
    checkListeners(document, controlPort);
}

} // namespace veranox
