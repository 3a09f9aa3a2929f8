#include "Service/Tunnels/TunnelRecord.h"

namespace veranox {

boost::json::object tunnelRecord(const std::string &name, const TunnelSettings &settings, const TunnelStatus &status)
{
    const TunnelSSHSettings ssh = settings.ssh.value_or(TunnelSSHSettings{});
    return {{"Name", name}, {"DisplayName", settings.displayName}, {"Profile", settings.profile},
        {"Mode", settings.mode}, {"Listen", settings.listen}, {"Target", settings.target}, {"SSHBastion", ssh.bastion},
        {"SSHUser", ssh.user}, {"SSHAuth", ssh.auth}, {"SSHIdentity", ssh.identityFile},
        {"Disabled", settings.disabled}, {"State", status.state}, {"ActiveConns", status.activeConns},
        {"LastError", status.lastError}};
}

} // namespace veranox
