#pragma once
#include <QStringList>

// One profile of the configuration document. Its name is its key in the document.
struct VeranoxEditableProfile {
    QString displayName;
    QString icon; // always a known one after decoding
    QString color; // always a known one after decoding
    QString backend; // "tsnet" or "tailscaled"
    QString hostname; // empty: the service derives it
    QString authKeyEnv;
    QString controlURL;
    QStringList suffixes;
    bool matchRoot = false;
    bool acceptRoutes = false;
    QStringList ipRoutes;
    QString stateDir;
    QString socket;
    QString httpProxy;
    QString socks5Proxy;
    qint64 port = 0;

    bool operator==(const VeranoxEditableProfile &) const = default;
};
