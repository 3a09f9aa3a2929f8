#pragma once
#include <QString>
#include <optional>

// How a tunnel of mode "ssh" reaches its bastion. The password never stands here: it travels by itself.
struct VeranoxEditableTunnelSSH {
    QString bastion;
    QString user;
    QString auth; // "agent", "key" or "password"
    QString identityFile; // path of the private key; empty unless auth is "key"

    bool operator==(const VeranoxEditableTunnelSSH &) const = default;
};

// A tunnel as it is saved, without its name.
struct VeranoxEditableTunnel {
    QString displayName;
    QString profile;
    QString mode; // "native" or "ssh"
    QString listen; // local host:port; empty: the service picks one
    QString target; // remote host:port
    std::optional<VeranoxEditableTunnelSSH> ssh; // of mode "ssh" only
    bool disabled = false;

    bool operator==(const VeranoxEditableTunnel &) const = default;
};

// The request to save a tunnel; one that names another original name renames it.
struct VeranoxTunnelSaveRequest {
    QString name;
    std::optional<QString> originalName;
    VeranoxEditableTunnel tunnel;

    bool operator==(const VeranoxTunnelSaveRequest &) const = default;
};

// The request that hands a tunnel's password to the service.
struct VeranoxTunnelSecretRequest {
    QString password;

    bool operator==(const VeranoxTunnelSecretRequest &) const = default;
};
