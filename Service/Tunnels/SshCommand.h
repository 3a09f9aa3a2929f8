#pragma once
#include "Service/Config/TunnelSettings.h"
#include "Service/Files/UserFolders.h"
#include <filesystem>
#include <string>
#include <vector>

namespace veranox {

/// What every connection of ssh needs to know of its surroundings.
struct SshPlaces {
    std::filesystem::path program; // this program's own file, which serves ssh as its helper
    std::filesystem::path knownHosts; // the service's own list of host keys
    Environment environment;
};

/// The sockets of one connection, in a folder that only this user can enter.
struct SshSockets {
    std::filesystem::path dial; // leads through the node to the bastion
    std::filesystem::path askpass; // gives the password
    std::filesystem::path forward; // where ssh takes connections for the target
};

/// Words and environment for ssh.
struct SshCommand {
    std::vector<std::string> arguments; // begins with the program's path
    std::vector<std::string> environment;
};

/// A line that ssh's local command writes to standard output once the forwarding stands.
inline constexpr std::string_view sshIsUp = "up";

/// The name of the variable that makes this program answer a password question.
inline constexpr const char *askpassVariable = "VERANOX_ASKPASS_SOCKET";

/// The command that keeps a background connection to the tunnel's bastion. ssh reads no configuration of the user's and
/// asks nothing: a host key that is new is noted in the service's own list, one that has changed ends the connection.
/// Throws std::invalid_argument with a sentence about a setting that cannot be used.
SshCommand sshCommand(const TunnelSettings &tunnel, const SshPlaces &places, const SshSockets &sockets);

/// What of ssh's standard error tells a person why it failed: the last line that is no mere notice, at most 300 bytes.
std::string sshComplaint(const std::string &errorOutput);

} // namespace veranox
