#include "Service/Tunnels/SshCommand.h"

#include "Service/Files/Programs.h"
#include "Service/Net/HostPort.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <array>
#include <stdexcept>

namespace veranox {

namespace fs = std::filesystem;

namespace {

constexpr std::uint16_t sshPort = 22;

bool isPlain(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte > ' ' && byte != 0x7F && c != '"' && c != '\'' && c != '\\';
}

std::string requirePlain(const std::string &what, const std::string &text)
{
    if (text.empty() || text.starts_with('-') || !std::ranges::all_of(text, isPlain))
        throw std::invalid_argument("The " + what + " of the bastion cannot be used: \"" + printable(text) + "\".");
    return text;
}

HostPort bastionOf(const std::string &text)
{
    const bool hasPort = text.contains(':');
    const HostPort bastion = hasPort ? parseHostPort(text) : HostPort{text, sshPort};
    requirePlain("address", bastion.host);
    return bastion;
}

std::string doubled(std::string_view text, char special)
{
    std::string result;
    for (const char c : text)
        result.append(c == special ? 2 : 1, c);
    return result;
}

/// A path as a value in ssh's own notation, where a per cent sign begins a placeholder.
std::string value(const fs::path &path)
{
    const std::string text = path.string();
    if (text.find_first_of("\"\\\n$") != std::string::npos)
        throw std::invalid_argument("The path " + printable(text) + " cannot be handed to ssh.");
    return "\"" + doubled(text, '%') + "\"";
}

/// A path as a word of the shell inside a value of ssh's.
std::string shellWord(const fs::path &path)
{
    const std::string text = path.string();
    if (text.find_first_of("'\n") != std::string::npos)
        throw std::invalid_argument("The path " + printable(text) + " cannot be handed to ssh.");
    return "'" + doubled(text, '%') + "'";
}

std::vector<std::string> authentication(const TunnelSSHSettings &ssh)
{
    if (ssh.auth == "key")
        return {"BatchMode=yes", "PreferredAuthentications=publickey", "IdentitiesOnly=yes", "IdentityAgent=none",
            "IdentityFile=" + value(ssh.identityFile)};
    if (ssh.auth == "password")
        return {"BatchMode=no", "PreferredAuthentications=password,keyboard-interactive", "PubkeyAuthentication=no",
            "NumberOfPasswordPrompts=1"};
    return {"BatchMode=yes", "PreferredAuthentications=publickey", "IdentityFile=none"};
}

std::vector<std::string> options(const TunnelSSHSettings &ssh, const SshPlaces &places, const SshSockets &sockets)
{
    std::vector<std::string> result{"ExitOnForwardFailure=yes", "StrictHostKeyChecking=accept-new",
        "UserKnownHostsFile=" + value(places.knownHosts), "GlobalKnownHostsFile=/dev/null", "UpdateHostKeys=no",
        "ConnectTimeout=20", "ServerAliveInterval=15", "ServerAliveCountMax=3", "ForwardAgent=no", "ForwardX11=no",
        "ControlMaster=no", "ControlPath=none", "LogLevel=INFO", "StreamLocalBindUnlink=yes", "PermitLocalCommand=yes",
        "LocalCommand=echo " + std::string(sshIsUp), "ProxyUseFdpass=yes",
        "ProxyCommand=" + shellWord(places.program) + " ssh-connect " + shellWord(sockets.dial)};
    std::ranges::move(authentication(ssh), std::back_inserter(result));
    return result;
}

std::vector<std::string> environmentFor(
    const TunnelSSHSettings &ssh, const SshPlaces &places, const SshSockets &sockets)
{
    std::vector<std::string> result{"SHELL=/bin/sh", "LC_ALL=C"};
    for (const char *name : {"HOME", "PATH", "USER", "LOGNAME"})
        if (const std::optional<std::string> text = places.environment(name))
            result.push_back(std::string(name) + "=" + *text);
    if (ssh.auth == "agent")
        if (const std::optional<std::string> agent = places.environment("SSH_AUTH_SOCK"))
            result.push_back("SSH_AUTH_SOCK=" + *agent);
    if (ssh.auth == "password") {
        result.push_back("SSH_ASKPASS=" + places.program.string());
        result.emplace_back("SSH_ASKPASS_REQUIRE=force");
        result.push_back(std::string(askpassVariable) + "=" + sockets.askpass.string());
    }
    return result;
}

bool isNotice(std::string_view line)
{
    constexpr std::array<std::string_view, 5> notices{
        "Warning: Permanently added", "** WARNING:", "** This session", "** The server", "@@@@@@"};
    return std::ranges::any_of(notices, [&](std::string_view notice) { return line.starts_with(notice); });
}

} // namespace

SshCommand sshCommand(const TunnelSettings &tunnel, const SshPlaces &places, const SshSockets &sockets)
{
    const std::optional<fs::path> program = findProgram("ssh", places.environment);
    if (!program)
        throw std::invalid_argument("The program ssh was not found; install the OpenSSH client.");
    const TunnelSSHSettings ssh = tunnel.ssh.value_or(TunnelSSHSettings{});
    const HostPort bastion = bastionOf(ssh.bastion);
    const HostPort target = parseHostPort(tunnel.target);
    const std::string targetHost = target.host.contains(':') ? "[" + target.host + "]" : target.host;
    std::vector<std::string> arguments{program->string(), "-N", "-T", "-F", "none"};
    for (std::string &option : options(ssh, places, sockets)) {
        arguments.emplace_back("-o");
        arguments.push_back(std::move(option));
    }
    std::ranges::move(
        std::vector<std::string>{"-L", sockets.forward.string() + ":" + targetHost + ":" + std::to_string(target.port),
            "-l", requirePlain("user", ssh.user), "-p", std::to_string(bastion.port), "--", bastion.host},
        std::back_inserter(arguments));
    return {std::move(arguments), environmentFor(ssh, places, sockets)};
}

std::string sshComplaint(const std::string &errorOutput)
{
    constexpr std::size_t longest = 300;
    std::string complaint;
    std::string_view rest = errorOutput;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        const std::string line = printable(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.find_first_not_of(' ') == std::string::npos || isNotice(line))
            continue;
        const bool isMoreTelling = complaint.contains("HOST IDENTIFICATION HAS CHANGED")
            || (complaint.contains("Permission denied") && line.contains("Connection closed"));
        if (!isMoreTelling)
            complaint = line.contains("HOST IDENTIFICATION HAS CHANGED")
                ? "REMOTE HOST IDENTIFICATION HAS CHANGED: the bastion shows another host key than before. If that is "
                  "right, remove its line from Veranox's known_hosts."
                : line;
    }
    return shortened(complaint, longest);
}

} // namespace veranox
