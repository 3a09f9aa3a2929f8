#pragma once
#include "API/Records/VeranoxPublicationReachability.h"
#include "API/Records/VeranoxStatusBadge.h"

// A local service that is reachable on one tailnet, as the service reports it. A property is empty where its text is
// absent.
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
    Q_PROPERTY(bool hasError READ hasError)
    Q_PROPERTY(QString visibleLastError READ visibleLastErrorOrEmpty)
    Q_PROPERTY(bool isUnreachable READ isUnreachable)
    Q_PROPERTY(VeranoxStatusBadge stateBadge READ stateBadge)

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

    // Whether the service has trouble with it, switched on or not. A blocked publication has none: it was never opened.
    bool hasError() const;

    // The error to show beside it; none while it is switched off or blocked.
    std::optional<QString> visibleLastError() const;

    // Up, and of no use: the tailnet's policy admits no device.
    bool isUnreachable() const;

    // The state in a word.
    VeranoxStatusBadge stateBadge() const;

    bool operator==(const VeranoxPublication &) const = default;

private:
    QString visibleLastErrorOrEmpty() const { return visibleLastError().value_or(QString()); }
};

Q_DECLARE_METATYPE(VeranoxPublication)
