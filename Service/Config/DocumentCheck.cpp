#include "Service/Config/DocumentCheck.h"

#include "Service/Config/ConfigCheck.h"
#include "Service/Config/PortPlan.h"
#include "Service/Config/PublicationCheck.h"
#include "Service/Config/TunnelCheck.h"
#include "Service/Text/Refusal.h"
#include <map>

namespace veranox {

namespace {

/// Checks one record after the other. The refusal tells of which, as the sender of a save knows it and the reader of a
/// file does not.
template <class Settings, class Check>
void checkEach(const std::string &what, const NamedList<Settings> &list, const Check &check)
{
    for (const auto &[name, settings] : list) {
        try {
            check(name, settings);
        } catch (const Refusal &refused) {
            throw Refusal(refused.kind, what + " \"" + name + "\": " + refused.what());
        }
    }
}

void append(std::vector<PortUse> &uses, const std::vector<PortUse> &more)
{
    uses.insert(uses.end(), more.begin(), more.end());
}

void checkTunnels(const ConfigDocument &document, std::uint16_t controlPort)
{
    std::vector<PortUse> taken = routerPorts(document, controlPort);
    append(taken, publishedPorts(document));
    checkEach("Tunnel", document.tunnels, [&taken](const std::string &name, const TunnelSettings &tunnel) {
        checkDisplayName(tunnel.displayName);
        checkTunnel(tunnel);
        checkFree(tunnel.listen, taken);
        if (const std::int64_t port = portOf(tunnel.listen))
            taken.push_back({port, "tunnel \"" + name + "\""});
    });
}

void checkPublications(const ConfigDocument &document, std::uint16_t controlPort)
{
    std::vector<PortUse> own = routerPorts(document, controlPort);
    append(own, tunnelPorts(document));
    std::map<std::pair<std::string, std::int64_t>, std::string> endpoints;
    checkEach("Publication", document.publications,
        [&own, &endpoints](const std::string &name, const PublicationSettings &publication) {
            checkDisplayName(publication.displayName);
            checkPublishedTarget(publication.target, own);
            checkPublishedPort(publication.port);
            const auto [place, isNew] = endpoints.emplace(std::pair(publication.profile, publication.port), name);
            if (!isNew)
                throw takenEndpoint(publication, place->second);
            checkReach(publication.reach);
        });
}

} // namespace

void checkDocument(const ConfigDocument &document, std::uint16_t controlPort)
{
    checkConfig(document, controlPort);
    checkTunnels(document, controlPort);
    checkPublications(document, controlPort);
}

} // namespace veranox
