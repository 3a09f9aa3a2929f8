#include "Platform/macOS/VeranoxKeychainTunnelSecrets.h"
#include "Platform/macOS/VeranoxTunnelSecretStore.h"

jobs::Async<std::optional<QString>> VeranoxKeychainTunnelSecrets::password(QString tunnelName, Unlocking /*unlocking*/)
{
    co_return VeranoxTunnelSecretStore::password(tunnelName);
}

jobs::Async<bool> VeranoxKeychainTunnelSecrets::hasPassword(QString tunnelName)
{
    co_return VeranoxTunnelSecretStore::hasPassword(tunnelName);
}

jobs::Async<bool> VeranoxKeychainTunnelSecrets::setPassword(QString password, QString tunnelName)
{
    co_return VeranoxTunnelSecretStore::setPassword(password, tunnelName);
}

jobs::Async<> VeranoxKeychainTunnelSecrets::deletePassword(QString tunnelName)
{
    VeranoxTunnelSecretStore::deletePassword(tunnelName);
    co_return;
}
