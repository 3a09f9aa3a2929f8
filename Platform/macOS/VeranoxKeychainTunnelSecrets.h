#pragma once
#include "Tunnels/VeranoxTunnelSecretStoring.h"

// The user's Keychain. It answers at once, and asks the user by itself when it must.
class VeranoxKeychainTunnelSecrets final : public VeranoxTunnelSecretStoring {
public:
    jobs::Async<std::optional<QString>> password(QString tunnelName, Unlocking unlocking) override;
    jobs::Async<bool> hasPassword(QString tunnelName) override;
    jobs::Async<bool> setPassword(QString password, QString tunnelName) override;
    jobs::Async<> deletePassword(QString tunnelName) override;
    QString problem() const override { return {}; }
};
