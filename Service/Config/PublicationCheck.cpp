#include "Service/Config/PublicationCheck.h"

#include "Service/Json/JsonReader.h"
#include "Service/Net/HostPort.h"
#include "Service/Text/Words.h"
#include <stdexcept>

namespace veranox {

namespace {

[[noreturn]] void refuse(const std::string &sentence)
{
    throw Refusal(Refusal::Kind::badInput, sentence);
}

std::string shown(const std::string &text)
{
    constexpr std::size_t longestShown = 80;
    return "\"" + shortened(printable(text), longestShown) + "\"";
}

HostPort parsedTarget(const std::string &target)
{
    try {
        return parseHostPort(target);
    } catch (const std::invalid_argument &problem) {
        refuse(std::string("The target ") + problem.what() + ".");
    }
}

} // namespace

/// A publication of one of our own listeners would let one tailnet into another. The port alone decides, as every name
/// of this computer leads to the same listeners.
void checkPublishedTarget(const std::string &text, const std::vector<PortUse> &own)
{
    const HostPort target = parsedTarget(text);
    if (!isLoopbackHost(target.host))
        refuse("The target must be a loopback address such as 127.0.0.1:8080.");
    if (const PortUse *use = findUse(own, target.port))
        refuse("The target is one of Veranox's own listeners: port " + std::to_string(target.port) + " belongs to "
            + use->by + ".");
}

void checkPublishedPort(std::int64_t port)
{
    if (port < portRange.least || port > portRange.most)
        refuse("The port must be in 1-65535.");
}

Refusal takenEndpoint(const PublicationSettings &publication, const std::string &other)
{
    return {Refusal::Kind::conflict,
        "The publication endpoint " + publication.profile + ":" + std::to_string(publication.port)
            + " is taken by publication " + shown(other) + "."};
}

void checkReach(const std::string &reach)
{
    if (reach != "tailnet" && reach != "funnel")
        refuse("The reach " + shown(reach) + R"( is not known; it must be "tailnet" or "funnel".)");
}

} // namespace veranox
