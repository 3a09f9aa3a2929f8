#include "Service/Control/TunnelSave.h"

#include "Service/Config/TunnelCheck.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Text/Refusal.h"

namespace veranox {

namespace {

/// `others` is the document without the tunnel itself.
void checkFreeBeside(const std::string &address, const ConfigDocument &others, std::uint16_t controlPort)
{
    checkFree(address, routerPorts(others, controlPort));
    checkFree(address, tunnelPorts(others));
    checkFree(address, publishedPorts(others));
}

ConfigDocument without(const ConfigDocument &document, const std::optional<std::string> &name)
{
    ConfigDocument others = document;
    std::erase_if(others.tunnels, [&](const auto &tunnel) { return tunnel.first == name; });
    return others;
}

} // namespace

ConfigDocument withTunnel(const ConfigDocument &current, SaveRequest<TunnelSettings> save, std::uint16_t controlPort)
{
    checkNames("tunnel", current.tunnels, save);
    TunnelSettings &tunnel = save.settings;
    checkDisplayName(tunnel.displayName);
    // Not "is not configured", as publications have it: the application would take that for the tunnel's own name.
    if (!findNamed(current.profiles, tunnel.profile))
        throw Refusal(Refusal::Kind::badInput,
            "Profile " + shownName(tunnel.profile) + " is no longer in the configuration; choose an existing profile.");
    checkTunnel(tunnel);
    if (!tunnel.listen.empty()) {
        tunnel.listen = toText(parseLoopbackEndpoint(tunnel.listen, 1));
        checkFreeBeside(tunnel.listen, without(current, save.originalName), controlPort);
    }
    ConfigDocument next = current;
    const std::string name = save.name;
    putTunnel(next, std::move(save));
    assignTunnelAddresses(next, controlPort);
    if (findNamed(next.tunnels, name)->listen.empty())
        throw Refusal(Refusal::Kind::conflict,
            "No local port is free from " + std::to_string(next.router.tunnelListenBase)
                + " on; give the tunnel a local address or change the tunnel base port.");
    return next;
}

} // namespace veranox
