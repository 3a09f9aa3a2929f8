#pragma once
#include <QMetaType>
#include <QString>

// A stable local TCP endpoint that the service forwards through one profile, as the service reports it.
struct VeranoxTunnel {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString displayName MEMBER displayName)
    Q_PROPERTY(QString profile MEMBER profile)
    Q_PROPERTY(QString mode MEMBER mode)
    Q_PROPERTY(QString listen MEMBER listen)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(QString sshBastion MEMBER sshBastion)
    Q_PROPERTY(QString sshUser MEMBER sshUser)
    Q_PROPERTY(QString sshAuth MEMBER sshAuth)
    Q_PROPERTY(QString sshIdentity MEMBER sshIdentity)
    Q_PROPERTY(bool disabled MEMBER disabled)
    Q_PROPERTY(QString state MEMBER state)
    Q_PROPERTY(qint64 activeConns MEMBER activeConns)
    Q_PROPERTY(QString lastError MEMBER lastError)

public:
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
