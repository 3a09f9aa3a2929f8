#include "Service/Config/PortPlan.h"

#include "Service/Config/ProfileDefaults.h"
#include <algorithm>
#include <charconv>

namespace veranox {

namespace {

std::string named(std::string_view kind, const std::string &name)
{
    return std::string(kind) + " \"" + name + "\"";
}

} // namespace

std::vector<PortUse> routerPorts(const ConfigDocument &document, std::uint16_t controlPort)
{
    const RouterSettings &router = document.router;
    std::vector<PortUse> uses{{controlPort, "the control API"}, {portOf(router.httpProxy), "the HTTP proxy"},
        {portOf(router.socks5Proxy), "the SOCKS5 proxy"}, {portOf(router.pacListen), "the PAC server"}};
    for (std::size_t i = 0; i < document.profiles.size(); ++i) {
        const std::string of = " of " + named("profile", document.profiles[i].first);
        const ProfileProxies proxies = profileProxies(document, i);
        uses.push_back({portOf(proxies.http), "the HTTP proxy" + of});
        uses.push_back({portOf(proxies.socks5), "the SOCKS5 proxy" + of});
    }
    std::erase_if(uses, [](const PortUse &use) { return use.port == 0; });
    return uses;
}

std::vector<PortUse> tunnelPorts(const ConfigDocument &document)
{
    std::vector<PortUse> uses;
    for (const auto &[name, tunnel] : document.tunnels)
        if (const std::int64_t port = portOf(tunnel.listen))
            uses.push_back({port, named("tunnel", name)});
    return uses;
}

std::vector<PortUse> publishedPorts(const ConfigDocument &document)
{
    std::vector<PortUse> uses;
    for (const auto &[name, publication] : document.publications)
        if (const std::int64_t port = portOf(publication.target))
            uses.push_back({port, "the service behind " + named("publication", name)});
    return uses;
}

const PortUse *findUse(const std::vector<PortUse> &uses, std::int64_t port)
{
    const auto found = std::ranges::find(uses, port, &PortUse::port);
    return found == uses.end() ? nullptr : &*found;
}

std::int64_t portOf(std::string_view address)
{
    const std::string_view digits = address.substr(address.rfind(':') + 1);
    std::int64_t port = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
    const bool isWhole = failure == std::errc{} && end == digits.data() + digits.size();
    return isWhole && port >= 1 && port <= 65535 && digits.size() < address.size() ? port : 0;
}

} // namespace veranox
