#pragma once
#include <QString>
#include <optional>

// The Keychain's items of tunnels: generic passwords of the service "app.veranox.tunnel-ssh-password", whose account is
// the tunnel's name. Each call is one short one of the system.
namespace VeranoxTunnelSecretStore {

// Absent on any failure, and when the bytes are no UTF-8.
std::optional<QString> password(const QString &tunnelName);

// Reads no password.
bool hasPassword(const QString &tunnelName);

// Updates the item, or adds one that can be read from the first unlock after a start on. An empty password deletes the
// item and always succeeds.
bool setPassword(const QString &password, const QString &tunnelName);

void deletePassword(const QString &tunnelName);

} // namespace VeranoxTunnelSecretStore
