#pragma once
#include <QString>
#include <array>

// How an SSH tunnel proves to its bastion who it is.
enum class VeranoxTunnelSSHAuth { agent, key, password };

// In the order in which they are offered.
inline constexpr std::array allVeranoxTunnelSSHAuths{
    VeranoxTunnelSSHAuth::agent, VeranoxTunnelSSHAuth::key, VeranoxTunnelSSHAuth::password};

// The word that the service uses.
QString rawValue(VeranoxTunnelSSHAuth auth);

// The authentication of that word; any other word reads as the agent.
VeranoxTunnelSSHAuth tunnelSSHAuth(const QString &word);
