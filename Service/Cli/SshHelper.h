#pragma once
#include <optional>
#include <span>

namespace veranox {

/// What ssh, run by the service, asks of this program: the way to a bastion ("ssh-connect SOCKET"), or a password (the
/// variable of SshCommand.h names the socket). Gives the exit status; nothing when the program was started for another
/// purpose.
std::optional<int> runSshHelper(std::span<char *const> words);

} // namespace veranox
