#include "Service/Control/PublicationSave.h"

#include "Service/Config/PortPlan.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Net/HostPort.h"
#include "Service/Text/FieldText.h"
#include "Service/Text/Refusal.h"
#include <stdexcept>

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

HostPort parsedTarget(const std::string &target)
{
    try {
        return parseHostPort(target);
    } catch (const std::invalid_argument &problem) {
        refuse(std::string("The target ") + problem.what() + ".");
    }
}

/// A publication of one of our own listeners would let one tailnet into another. The port alone decides, as every name
/// of this computer leads to the same listeners.
void checkTarget(const ConfigDocument &document, const std::string &text, std::uint16_t controlPort)
{
    const HostPort target = parsedTarget(text);
    if (!isLoopbackHost(target.host))
        refuse("The target must be a loopback address such as 127.0.0.1:8080.");
    for (const std::vector<PortUse> &own : {routerPorts(document, controlPort), tunnelPorts(document)})
        if (const PortUse *use = findUse(own, target.port))
            refuse("The target is one of Veranox's own listeners: port " + std::to_string(target.port) + " belongs to "
                + use->by + ".");
}

void checkEndpoint(const ConfigDocument &document, const SaveRequest<PublicationSettings> &save)
{
    for (const auto &[name, other] : document.publications)
        if (name != save.originalName && other.profile == save.settings.profile && other.port == save.settings.port)
            throw Refusal(Refusal::Kind::conflict,
                "The publication endpoint " + other.profile + ":" + std::to_string(other.port)
                    + " is taken by publication " + shownName(name) + ".");
}

} // namespace

ConfigDocument withPublication(
    const ConfigDocument &current, SaveRequest<PublicationSettings> save, std::uint16_t controlPort)
{
    constexpr std::size_t longestText = 1024;
    checkNames("publication", current.publications, save);
    const PublicationSettings &publication = save.settings;
    if (const std::optional<std::string> problem = lineProblem(publication.displayName, longestText))
        refuse("The display name " + *problem + ".");
    checkProfile(current, publication.profile);
    checkTarget(current, publication.target, controlPort);
    if (publication.port < portRange.least || publication.port > portRange.most)
        refuse("The port must be in 1-65535.");
    checkEndpoint(current, save);
    if (publication.reach != "tailnet" && publication.reach != "funnel")
        refuse("The reach " + shownName(publication.reach) + R"( is not known; it must be "tailnet" or "funnel".)");
    ConfigDocument next = current;
    putPublication(next, std::move(save));
    return next;
}

} // namespace veranox
