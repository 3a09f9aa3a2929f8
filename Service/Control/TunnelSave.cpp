#include "Service/Control/TunnelSave.h"

#include "Service/Config/PortPlan.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Net/HostPort.h"
#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Text/FieldText.h"
#include "Service/Text/Refusal.h"
#include <stdexcept>

namespace veranox {

namespace {

constexpr std::size_t longestText = 1024;

[[noreturn]] void refuse(const std::string &sentence)
{
    throw Refusal(Refusal::Kind::badInput, sentence);
}

void checkLine(const std::string &what, const std::string &text)
{
    if (const std::optional<std::string> problem = lineProblem(text, longestText))
        refuse("The " + what + " " + *problem + ".");
}

void checkTarget(const std::string &target)
{
    try {
        parseHostPort(target);
    } catch (const std::invalid_argument &problem) {
        refuse(std::string("The target ") + problem.what() + ".");
    }
}

/// Both become arguments of a program, where a hyphen in front would be read as an option.
void checkAccount(const std::string &what, const std::string &text)
{
    if (text.empty())
        refuse("An SSH tunnel needs a bastion host and an SSH user; the " + what + " is missing.");
    checkLine(what, text);
    if (text.starts_with('-') || text.find_first_of(" @") != std::string::npos)
        refuse("The " + what + " cannot start with a hyphen or hold a blank or an @.");
}

bool isHostPort(const std::string &text)
{
    try {
        parseHostPort(text);
        return true;
    } catch (const std::invalid_argument &) {
        return false;
    }
}

void checkBastion(const TunnelSSHSettings &ssh)
{
    checkAccount("bastion host", ssh.bastion);
    if (!isHostPort(ssh.bastion) && !isHostPort(ssh.bastion + ":22"))
        refuse("The bastion host must be a host name or an address, with its port behind it where that is not 22.");
    checkAccount("SSH user", ssh.user);
    checkLine("private key's path", ssh.identityFile);
    if (ssh.auth == "key" && !ssh.identityFile.starts_with('/'))
        refuse("The private key must be an absolute path.");
}

std::string checkedAddress(const std::string &listen)
{
    try {
        return toText(parseLoopbackEndpoint(listen, 1));
    } catch (const std::invalid_argument &problem) {
        refuse(std::string("The local address ") + problem.what() + ".");
    }
}

/// `others` is the document without the tunnel itself.
void checkFree(const std::string &address, const ConfigDocument &others, std::uint16_t controlPort)
{
    for (const std::vector<PortUse> &uses :
        {routerPorts(others, controlPort), tunnelPorts(others), publishedPorts(others)})
        if (const PortUse *use = findUse(uses, portOf(address)))
            throw Refusal(Refusal::Kind::conflict, "The local address " + address + " is taken by " + use->by + ".");
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
    checkLine("display name", tunnel.displayName);
    // Not "is not configured", as publications have it: the application would take that for the tunnel's own name.
    if (!findNamed(current.profiles, tunnel.profile))
        refuse(
            "Profile " + shownName(tunnel.profile) + " is no longer in the configuration; choose an existing profile.");
    checkTarget(tunnel.target);
    if (tunnel.mode == "ssh")
        checkBastion(tunnel.ssh.value_or(TunnelSSHSettings{}));
    if (!tunnel.listen.empty()) {
        tunnel.listen = checkedAddress(tunnel.listen);
        checkFree(tunnel.listen, without(current, save.originalName), controlPort);
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
