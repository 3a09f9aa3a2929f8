#pragma once
#include "Tunnels/VeranoxTunnelSecretStoring.h"

// Keeps nothing: for a system without a store of secrets. A typed password still serves until the service restarts.
class VeranoxNoTunnelSecrets final : public VeranoxTunnelSecretStoring {
public:
    explicit VeranoxNoTunnelSecrets(QString problem);

    jobs::Async<std::optional<QString>> password(QString tunnelName, Unlocking unlocking) override;
    jobs::Async<bool> hasPassword(QString tunnelName) override;
    jobs::Async<bool> setPassword(QString password, QString tunnelName) override;
    jobs::Async<> deletePassword(QString tunnelName) override;
    QString problem() const override { return m_problem; }

private:
    const QString m_problem;
};
