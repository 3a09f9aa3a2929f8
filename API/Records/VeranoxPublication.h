#pragma once
#include "API/Records/VeranoxPublicationReachability.h"
#include "API/Records/VeranoxStatusBadge.h"

// A local service that is reachable on one tailnet, as the service reports it.
struct VeranoxPublication {
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
};

Q_DECLARE_METATYPE(VeranoxPublication)
