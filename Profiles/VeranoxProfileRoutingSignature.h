#pragma once
#include "API/Records/VeranoxEditableProfile.h"

// What of a profile the running router has built in: it must restart when this changes, and only then.
struct VeranoxProfileRoutingSignature {
    QString backend;
    QString hostname;
    QStringList suffixes;
    bool matchRoot = false;
    bool acceptRoutes = false;
    QStringList ipRoutes;
    QString stateDir;
    QString socket;
    QString httpProxy;
    QString socks5Proxy;
    qint64 port = 0;

    explicit VeranoxProfileRoutingSignature(const VeranoxEditableProfile &profile);

    bool operator==(const VeranoxProfileRoutingSignature &) const = default;
};
