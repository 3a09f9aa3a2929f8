#pragma once
#include "Core/Jobs/Jobs.h"
#include "Tunnels/VeranoxTunnelSecretStoring.h"
#include <memory>

using SecretItem = struct _SecretItem; // NOLINT(bugprone-reserved-identifier): libsecret's own name

// The desktop's keyring, through the Secret Service. Every item has the attributes `service`, which is
// "app.veranox.tunnel-ssh-password", and `account`, the tunnel's name. Needs the session bus and an event loop that
// serves GLib. A question to the user is given up after a minute.
class SecretServiceTunnelSecrets final : public VeranoxTunnelSecretStoring {
public:
    explicit SecretServiceTunnelSecrets(jobs::MainQueue &queue);
    ~SecretServiceTunnelSecrets() override;

    jobs::Async<std::optional<QString>> password(QString tunnelName, Unlocking unlocking) override;
    jobs::Async<bool> hasPassword(QString tunnelName) override;
    jobs::Async<bool> setPassword(QString password, QString tunnelName) override;
    jobs::Async<> deletePassword(QString tunnelName) override;
    QString problem() const override { return m_problem; }

private:
    using Item = std::shared_ptr<SecretItem>; // null: there is none

    jobs::Async<Item> find(QString tunnelName);
    jobs::Async<bool> unlock(Item item);
    jobs::Async<std::optional<QString>> secretOf(Item item);
    jobs::Async<std::optional<QString>> readPassword(QString tunnelName);
    jobs::Async<std::optional<QString>> readPasswordQuietly(QString tunnelName);
    jobs::Async<bool> store(QString password, QString tunnelName);
    jobs::Async<bool> clear(QString tunnelName);

    jobs::MainQueue &m_queue;
    QString m_problem;
    bool m_hasAskedToUnlock = false; // by itself, for work that repeats
    jobs::JobScope m_jobs;
};
