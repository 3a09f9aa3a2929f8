#pragma once
#include "Publications/VeranoxPublicationReachability.h"

// A local service that is reachable on one tailnet, as the service reports it.
struct VeranoxPublication {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString displayName MEMBER displayName)
    Q_PROPERTY(QString profile MEMBER profile)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(QString reach MEMBER reach)
    Q_PROPERTY(qint64 port MEMBER port)
    Q_PROPERTY(bool tls MEMBER tls)
    Q_PROPERTY(bool disabled MEMBER disabled)
    Q_PROPERTY(QString state MEMBER state)
    Q_PROPERTY(QString address MEMBER address)
    Q_PROPERTY(qint64 activeConns MEMBER activeConns)
    Q_PROPERTY(QString lastError MEMBER lastError)
    Q_PROPERTY(QString lastActive MEMBER lastActive)
    Q_PROPERTY(VeranoxPublicationReachability reachability MEMBER reachability)

public:
    QString name; // its key in the service
    QString displayName;
    QString profile;
    QString target; // host:port of the local service
    QString reach; // "tailnet" or "funnel"
    qint64 port = 0; // tailnet port
    bool tls = false; // the service terminates TLS on the tailnet port
    bool disabled = false;
    QString state; // "listening", "starting", "error", "stopped" or "blocked"
    QString address; // where it is reached on the tailnet
    qint64 activeConns = 0;
    QString lastError;
    QString lastActive; // as sent
    VeranoxPublicationReachability reachability;

    bool operator==(const VeranoxPublication &) const = default;
};

Q_DECLARE_METATYPE(VeranoxPublication)
