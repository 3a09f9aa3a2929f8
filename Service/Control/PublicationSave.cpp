#include "Service/Control/PublicationSave.h"

#include "Service/Config/PortPlan.h"
#include "Service/Config/PublicationCheck.h"
#include "Service/Config/TunnelCheck.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Text/Refusal.h"
#include <algorithm>
#include <iterator>

namespace veranox {

namespace {

[[noreturn]] void refuse(const std::string &sentence)
{
    throw Refusal(Refusal::Kind::badInput, sentence);
}

void checkProfile(const ConfigDocument &document, const std::string &name)
{
    const ProfileSettings *profile = findNamed(document.profiles, name);
    if (!profile)
        refuse("The profile " + shownName(name) + " is not configured.");
    if (profile->backend != "tsnet")
        refuse("Publications require the tsnet backend, but profile " + shownName(name) + " runs on " + profile->backend
            + ".");
}

std::vector<PortUse> ownPorts(const ConfigDocument &document, std::uint16_t controlPort)
{
    std::vector<PortUse> own = routerPorts(document, controlPort);
    std::ranges::move(tunnelPorts(document), std::back_inserter(own));
    return own;
}

void checkEndpoint(const ConfigDocument &document, const SaveRequest<PublicationSettings> &save)
{
    for (const auto &[name, other] : document.publications)
        if (name != save.originalName && other.profile == save.settings.profile && other.port == save.settings.port)
            throw takenEndpoint(other, name);
}

} // namespace

ConfigDocument withPublication(
    const ConfigDocument &current, SaveRequest<PublicationSettings> save, std::uint16_t controlPort)
{
    checkNames("publication", current.publications, save);
    const PublicationSettings &publication = save.settings;
    checkDisplayName(publication.displayName);
    checkProfile(current, publication.profile);
    checkPublishedTarget(publication.target, ownPorts(current, controlPort));
    checkPublishedPort(publication.port);
    checkEndpoint(current, save);
    checkReach(publication.reach);
    ConfigDocument next = current;
    putPublication(next, std::move(save));
    return next;
}

} // namespace veranox
