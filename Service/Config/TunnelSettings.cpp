#include "Service/Config/TunnelSettings.h"

namespace veranox {

namespace json = boost::json;

namespace {

TunnelSSHSettings readSSH(JsonReader reader)
{
    return {.bastion = reader.text("Bastion"),
        .user = reader.text("User"),
        .auth = reader.word("Auth", {"agent", "key", "password"}, "agent"),
        .identityFile = reader.text("IdentityFile", "")};
}

json::object toJson(const TunnelSSHSettings &ssh)
{
    return {{"Bastion", ssh.bastion}, {"User", ssh.user}, {"Auth", ssh.auth}, {"IdentityFile", ssh.identityFile}};
}

} // namespace

TunnelSettings readTunnel(JsonReader reader)
{
    TunnelSettings tunnel{.displayName = reader.text("DisplayName", ""),
        .profile = reader.text("Profile"),
        .mode = reader.word("Mode", {"native", "ssh"}, "native"),
        .listen = reader.text("Listen", ""),
        .target = reader.text("Target"),
        .ssh = std::nullopt,
        .disabled = reader.flag("Disabled", false)};
    if (std::optional<JsonReader> ssh = reader.objectIfPresent("SSH"))
        tunnel.ssh = readSSH(*ssh);
    if (tunnel.mode == "ssh" && !tunnel.ssh)
        reader.complain("Mode", R"(is "ssh", but the key "SSH" with the bastion is missing)");
    return tunnel;
}

json::object toJson(const TunnelSettings &tunnel)
{
    return {{"DisplayName", tunnel.displayName}, {"Profile", tunnel.profile}, {"Mode", tunnel.mode},
        {"Listen", tunnel.listen}, {"Target", tunnel.target},
        {"SSH", tunnel.ssh ? json::value(toJson(*tunnel.ssh)) : json::value(nullptr)}, {"Disabled", tunnel.disabled}};
}

} // namespace veranox
