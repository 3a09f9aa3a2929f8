#include "Service/Config/ProfileDefaults.h"

namespace veranox {

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

std::string hostnameOf(const ProfileSettings *settings, const RouterSettings &router, const std::string &profile)
{
    return configuredOr(settings ? settings->hostname : "", router.profileHostnameBase + "-" + profile);
}

} // namespace

std::string nodeHostname(const ConfigDocument &document, const std::string &profile)
{
    return hostnameOf(findNamed(document.profiles, profile), document.router, profile);
}

std::string nodeHostname(const IndexedConfig &config, const std::string &profile)
{
    return hostnameOf(config.profile(profile), config.document().router, profile);
}

std::string unconfiguredProfile(const std::string &profile)
{
    return "The profile \"" + profile + "\" is not configured.";
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

} // namespace veranox
