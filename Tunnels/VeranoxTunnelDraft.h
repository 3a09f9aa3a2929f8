#pragma once
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxTunnel.h"
#include "API/Values/VeranoxDraftError.h"
#include "Tunnels/VeranoxTunnelSSHAuth.h"
#include <QUuid>
#include <optional>

// A tunnel as a person types it. Every text stays as typed until makeTunnel().
struct VeranoxTunnelDraft {
    QUuid id = QUuid::createUuid(); // of this edit
    std::optional<QString> originalName; // of the tunnel being edited; absent for a new one
    QString name;
    QString displayName; // empty: the name serves as the label
    QString profile; // name of the profile that carries it
    QString target; // host:port to reach
    bool useSSH = false; // through a bastion rather than straight from the profile's node
    QString bastion; // host
    QString sshUser; // account on the bastion
    VeranoxTunnelSSHAuth sshAuth = VeranoxTunnelSSHAuth::agent;
    QString identityFile; // path of the private key
    QString password; // typed in this edit, never loaded from storage
    bool hasStoredPassword = false;
    QString listen; // local host:port; empty: the service picks one
    bool disabled = false;

    VeranoxTunnelDraft() = default;
    // The draft of an existing tunnel. `hasStoredPassword` counts only if asksForStoredPassword().
    explicit VeranoxTunnelDraft(const VeranoxTunnel &tunnel, bool hasStoredPassword = false);

    // Whether a password may be kept for that tunnel. Nothing else is worth a question to the keyring.
    static bool asksForStoredPassword(const VeranoxTunnel &tunnel);

    // Whether no tunnel is replaced.
    bool isNew() const { return !originalName; }

    // The name that goes to the service: trimmed and in lower case.
    QString normalName() const;

    // Whether the field shows no error; an empty one shows none.
    bool isValidName() const;
    bool isValidTarget() const;

    // Whether a password must be typed before the tunnel can be saved.
    bool needsPassword() const;

    // Whether there is a point in trying to save.
    bool isReadyToSave() const;

    // Why the name is taken by another tunnel, if it is.
    std::optional<QString> nameConflict(const QList<VeranoxTunnel> &existing) const;

    // The tunnel to save under normalName(), or the first problem. It holds no password.
    VeranoxDraftResult<VeranoxEditableTunnel> makeTunnel() const;

    bool operator==(const VeranoxTunnelDraft &) const = default;
};

Q_DECLARE_METATYPE(VeranoxTunnelDraft)
