#include "API/Records/VeranoxEditableTunnel.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxEditableTunnelSSH> {
    using SSH = VeranoxEditableTunnelSSH;
    static constexpr std::tuple fields{
        required("Bastion", &SSH::bastion),
        required("User", &SSH::user),
        required("Auth", &SSH::auth),
        required("IdentityFile", &SSH::identityFile),
    };
};

template <> struct json::Layout<VeranoxEditableTunnel> {
    using Tunnel = VeranoxEditableTunnel;
    static constexpr std::tuple fields{
        required("DisplayName", &Tunnel::displayName),
        required("Profile", &Tunnel::profile),
        required("Mode", &Tunnel::mode),
        required("Listen", &Tunnel::listen),
        required("Target", &Tunnel::target),
        field("SSH", &Tunnel::ssh),
        required("Disabled", &Tunnel::disabled),
    };
};

template <> struct json::Layout<VeranoxTunnelSaveRequest> {
    using Request = VeranoxTunnelSaveRequest;
    static constexpr std::tuple fields{
        required("Name", &Request::name),
        field("OriginalName", &Request::originalName),
        required("Tunnel", &Request::tunnel),
    };
};

template <> struct json::Layout<VeranoxTunnelSecretRequest> {
    static constexpr std::tuple fields{
        required("Password", &VeranoxTunnelSecretRequest::password),
    };
};

template VeranoxEditableTunnel decodeRecord(const QByteArray &);
template QByteArray encodeRecord(const VeranoxEditableTunnel &);
template VeranoxTunnelSaveRequest decodeRecord(const QByteArray &);
template QByteArray encodeRecord(const VeranoxTunnelSaveRequest &);
template QByteArray encodeRecord(const VeranoxTunnelSecretRequest &);
