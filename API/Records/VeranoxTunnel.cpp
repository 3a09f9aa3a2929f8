#include "API/Records/VeranoxTunnel.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxTunnel> {
    static constexpr std::tuple fields{
        field("Name", &VeranoxTunnel::name, ""),
        field("DisplayName", &VeranoxTunnel::displayName, ""),
        field("Profile", &VeranoxTunnel::profile, ""),
        field("Mode", &VeranoxTunnel::mode, "native"),
        field("Listen", &VeranoxTunnel::listen, ""),
        field("Target", &VeranoxTunnel::target, ""),
        field("SSHBastion", &VeranoxTunnel::sshBastion, ""),
        field("SSHUser", &VeranoxTunnel::sshUser, ""),
        field("SSHAuth", &VeranoxTunnel::sshAuth, "agent"),
        field("SSHIdentity", &VeranoxTunnel::sshIdentity, ""),
        field("Disabled", &VeranoxTunnel::disabled, false),
        field("State", &VeranoxTunnel::state, "stopped"),
        field("ActiveConns", &VeranoxTunnel::activeConns, 0),
        field("LastError", &VeranoxTunnel::lastError, ""),
    };
};

template VeranoxTunnel decodeRecord(const QByteArray &);
template QList<VeranoxTunnel> decodeRecord(const QByteArray &);
