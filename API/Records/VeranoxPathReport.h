#pragma once
#include <QMetaType>
#include <QStringList>
#include <optional>

// The node of a path report's profile, as it describes itself.
struct VeranoxPathSelfNode {
    QString hostName;
    QString dnsName;
    QStringList tailscaleIPs;
    bool online = false;

    bool operator==(const VeranoxPathSelfNode &) const = default;
};

// The state of that node.
struct VeranoxPathProfileStatus {
    bool ok = false;
    QString backendState;
    std::optional<VeranoxPathSelfNode> selfNode;

    bool operator==(const VeranoxPathProfileStatus &) const = default;
};

// What a name resolves to inside the tailnet.
struct VeranoxDNSReport {
    bool ok = false;
    QString profile;
    QString host;
    QString network;
    QStringList addresses;
    QString error;

    bool operator==(const VeranoxDNSReport &) const = default;
};

// Whether the target answers a ping, and by which way.
struct VeranoxPingReport {
    bool ok = false;
    QString target;
    bool direct = false;
    bool derp = false;
    bool peerRelay = false;
    QString error;
    QString commandDuration;

    bool operator==(const VeranoxPingReport &) const = default;
};

// What an HTTP request to the target brings.
struct VeranoxHTTPReport {
    bool ok = false;
    QString url;
    QString method;
    QString status;
    qint64 statusCode = 0;
    QString contentType;
    qint64 totalMS = 0;
    qint64 timeToHeadersMS = 0;
    qint64 timeToFirstBodyByteMS = 0;
    qint64 bytesRead = 0;
    QString error;

    bool operator==(const VeranoxHTTPReport &) const = default;
};

// Whether the profile's node finds its network in order.
struct VeranoxNetcheckReport {
    bool ok = false;
    QString error;

    bool operator==(const VeranoxNetcheckReport &) const = default;
};

// Which profile owns a target, and how far a request to it gets.
struct VeranoxPathReport {
    QString profile; // empty when no route matched
    QString profileBackend;
    QString target; // as asked
    QString host;
    QString ruleSuffix; // the suffix rule that matched
    QString routeType; // "ip_route" is one value
    QString ipRoute; // the address range that matched
    QString profileSocket;
    QString profileHTTPProxy;
    QString profileSOCKS5Proxy;
    qint64 profileUDPPort = 0;
    QString routerHTTPProxy; // the shared proxy
    std::optional<VeranoxPathProfileStatus> status;
    std::optional<VeranoxDNSReport> dns;
    std::optional<VeranoxPingReport> ping;
    std::optional<VeranoxHTTPReport> http;
    std::optional<VeranoxNetcheckReport> netcheck;
    QString summary; // one-line verdict
    QStringList recommendations; // advice, in order

    // A profile was chosen, and a rule chose it.
    bool routeMatched() const;

    bool operator==(const VeranoxPathReport &) const = default;
};

Q_DECLARE_METATYPE(VeranoxPathReport)
