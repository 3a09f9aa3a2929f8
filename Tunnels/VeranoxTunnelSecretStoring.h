#pragma once
#include "Base/Jobs/Async.h"
#include <QString>
#include <optional>

// Where the passwords of SSH tunnels are kept: the system's own store of secrets, one item a tunnel. Main thread only,
// from within a job. No operation throws, and none blocks: one that needs the user waits without the main thread.
class VeranoxTunnelSecretStoring {
public:
    // What a locked store may do to give a password.
    enum class Unlocking {
        ask, // somebody wants it now: ask the user and wait for the answer
        askOnce // for work that repeats by itself: never wait, and ask the user once at most
    };

    VeranoxTunnelSecretStoring() = default;
    VeranoxTunnelSecretStoring(const VeranoxTunnelSecretStoring &) = delete;
    VeranoxTunnelSecretStoring &operator=(const VeranoxTunnelSecretStoring &) = delete;
    virtual ~VeranoxTunnelSecretStoring() = default;

    // Absent when there is none, on any failure, and when what is kept is no UTF-8.
    virtual jobs::Async<std::optional<QString>> password(QString tunnelName, Unlocking unlocking) = 0;

    // Reads no password and asks nobody.
    virtual jobs::Async<bool> hasPassword(QString tunnelName) = 0;

    // Whether it is now kept, in place of an earlier one. An empty password deletes the item and always succeeds.
    virtual jobs::Async<bool> setPassword(QString password, QString tunnelName) = 0;

    // No item, no matter.
    virtual jobs::Async<> deletePassword(QString tunnelName) = 0;

    // Why passwords cannot be kept, as one sentence for a person; empty as far as nothing is known against it.
    virtual QString problem() const = 0;
};
