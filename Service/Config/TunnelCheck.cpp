#include "Service/Config/TunnelCheck.h"

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

/// Both become arguments of a program, where a hyphen in front would be read as an option and a quote as its own.
void checkAccount(const std::string &what, const std::string &text)
{
    if (text.empty())
        refuse("An SSH tunnel needs a bastion host and an SSH user; the " + what + " is missing.");
    checkLine(what, text);
    if (text.starts_with('-') || text.find_first_of(" @") != std::string::npos)
        refuse("The " + what + " cannot start with a hyphen or hold a blank or an @.");
    if (text.find_first_of("\"'\\") != std::string::npos)
        refuse("The " + what + " cannot hold a quote or a backslash.");
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

/// ssh is told of a port by a colon, so that an address that has colons of its own needs one behind it.
void checkBastionHost(const std::string &bastion)
{
    if (!isHostPort(bastion.contains(':') ? bastion : bastion + ":22"))
        refuse("The bastion host must be a host name or an address, with its port behind it where that is not 22.");
}

void checkIdentity(const TunnelSSHSettings &ssh)
{
    checkLine("private key's path", ssh.identityFile);
    if (ssh.auth != "key")
        return;
    if (!ssh.identityFile.starts_with('/'))
        refuse("The private key must be an absolute path.");
    if (ssh.identityFile.find_first_of("\"\\$") != std::string::npos)
        refuse("The private key's path cannot hold a double quote, a backslash or a dollar sign.");
}

void checkBastion(const TunnelSSHSettings &ssh)
{
    checkAccount("bastion host", ssh.bastion);
    checkBastionHost(ssh.bastion);
    checkAccount("SSH user", ssh.user);
    checkIdentity(ssh);
}

void checkAddress(const std::string &listen)
{
    try {
        parseLoopbackEndpoint(listen, 1);
    } catch (const std::invalid_argument &problem) {
        refuse(std::string("The local address ") + problem.what() + ".");
    }
}

} // namespace

void checkDisplayName(const std::string &displayName)
{
    checkLine("display name", displayName);
}

void checkTunnel(const TunnelSettings &tunnel)
{
    checkTarget(tunnel.target);
    if (tunnel.mode == "ssh")
        checkBastion(tunnel.ssh.value_or(TunnelSSHSettings{}));
    if (!tunnel.listen.empty())
        checkAddress(tunnel.listen);
}

void checkFree(const std::string &address, const std::vector<PortUse> &taken)
{
    if (const PortUse *use = findUse(taken, portOf(address)))
        throw Refusal(Refusal::Kind::conflict, "The local address " + address + " is taken by " + use->by + ".");
}

} // namespace veranox
