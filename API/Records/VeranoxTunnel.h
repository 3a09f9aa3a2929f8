#pragma once
#include <QMetaType>
#include <QString>

// A stable local TCP endpoint that the service forwards through one profile, as the service reports it.
struct VeranoxTunnel {
    QString name; // its key in the service, and the account name of its stored password
    QString displayName;
    QString profile;
    QString mode; // "native" or "ssh"
    QString listen; // local host:port
    QString target; // remote host:port
    QString sshBastion;
    QString sshUser;
    QString sshAuth; // "agent", "key" or "password"
    QString sshIdentity; // path of the private key
    bool disabled = false;
    QString state; // "listening", "starting", "error", "stopped" or "blocked"
    qint64 activeConns = 0;
    QString lastError;

    bool operator==(const VeranoxTunnel &) const = default;
};

Q_DECLARE_METATYPE(VeranoxTunnel)
