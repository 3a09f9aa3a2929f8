#pragma once
#include <QMetaType>
#include <QString>
#include <array>

// Holds the enumeration so that views read it by name.
namespace VeranoxTunnelSSH {
Q_NAMESPACE

// How an SSH tunnel proves to its bastion who it is.
enum class Auth { agent, key, password };
Q_ENUM_NS(Auth)

} // namespace VeranoxTunnelSSH

using VeranoxTunnelSSHAuth = VeranoxTunnelSSH::Auth;

// In the order in which they are offered.
inline constexpr std::array allVeranoxTunnelSSHAuths{
    VeranoxTunnelSSHAuth::agent, VeranoxTunnelSSHAuth::key, VeranoxTunnelSSHAuth::password};

// The word that the service uses.
QString rawValue(VeranoxTunnelSSHAuth auth);

// The authentication of that word; any other word reads as the agent.
VeranoxTunnelSSHAuth tunnelSSHAuth(const QString &word);
