#pragma once
#include "Base/Jobs/Jobs.h"
#include "Platform/Linux/Secrets/SecretServiceFailure.h"
#include "Tunnels/VeranoxTunnelSecretStoring.h"
#include <memory>

// NOLINTBEGIN(bugprone-reserved-identifier): libsecret's own names
using SecretItem = struct _SecretItem;
using SecretService = struct _SecretService;
// NOLINTEND(bugprone-reserved-identifier)

// The desktop's keyring, through the Secret Service. Every item has the attributes `service`, which is
// "app.veranox.tunnel-ssh-password", and `account`, the tunnel's name. Needs the session bus and an event loop that
// serves GLib. A question to the user is given up after a minute. A keyring that was started anew is asked once more.
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
    using Self = SecretServiceTunnelSecrets;
    using Service = std::shared_ptr<SecretService>;
    template <class T, class... Arguments>
    using Operation = jobs::Async<SecretServiceResult<T>> (Self::*)(Arguments...);

    struct Found {
        Service service;
        std::shared_ptr<SecretItem> item; // null: there is none
    };

    template <class T, class... Arguments>
    jobs::Async<SecretServiceResult<T>> attempt(Operation<T, Arguments...> operation, Arguments... arguments);
    template <class T, class... Arguments>
    jobs::Async<SecretServiceResult<T>> attemptOnce(Operation<T, Arguments...> operation, Arguments... arguments);
    jobs::Async<SecretServiceResult<Service>> connection();
    jobs::Async<SecretServiceResult<Found>> find(QString tunnelName);
    jobs::Async<SecretServiceResult<bool>> unlock(Found found);
    jobs::Async<SecretServiceResult<std::optional<QString>>> secretOf(Found found);
    jobs::Async<SecretServiceResult<std::optional<QString>>> readPassword(QString tunnelName);
    jobs::Async<SecretServiceResult<std::optional<QString>>> readPasswordQuietly(QString tunnelName);
    jobs::Async<SecretServiceResult<bool>> store(QString tunnelName, QString password);
    jobs::Async<SecretServiceResult<bool>> clear(QString tunnelName);

    jobs::MainQueue &m_queue;
    QString m_problem;
    bool m_hasAskedToUnlock = false; // by itself, for work that repeats
    jobs::JobScope m_jobs;
};
