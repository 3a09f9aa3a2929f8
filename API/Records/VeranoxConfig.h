#pragma once
#include <QMetaType>
#include <QString>

// The addresses and bases of the running router.
struct VeranoxRouterConfig {
    QString httpProxy; // host:port, as sent
    QString socks5Proxy; // host:port, as sent
    QString pacListen; // host:port, always on loopback
    qint64 profileHTTPProxyBase = 0;
    qint64 profileSOCKS5ProxyBase = 0;
    qint64 profileUDPPortBase = 0;
    QString profileHostnameBase;
    qint64 tunnelListenBase = 0;

    // What holds where the service says nothing.
    static VeranoxRouterConfig defaults();

    bool operator==(const VeranoxRouterConfig &) const = default;
};

// The small, tolerant view of the service's configuration that the status screens read.
struct VeranoxConfig {
    VeranoxRouterConfig router;

    bool operator==(const VeranoxConfig &) const = default;
};

Q_DECLARE_METATYPE(VeranoxRouterConfig)
Q_DECLARE_METATYPE(VeranoxConfig)
