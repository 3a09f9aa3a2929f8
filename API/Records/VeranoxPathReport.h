#pragma once
#include <QMetaType>
#include <QStringList>
#include <optional>

// The node of a path report's profile, as it describes itself.
struct VeranoxPathSelfNode {
    Q_GADGET
    Q_PROPERTY(QString hostName MEMBER hostName)
    Q_PROPERTY(QString dnsName MEMBER dnsName)
    Q_PROPERTY(QStringList tailscaleIPs MEMBER tailscaleIPs)
    Q_PROPERTY(bool online MEMBER online)

public:
    QString hostName;
    QString dnsName;
    QStringList tailscaleIPs;
    bool online = false;

    bool operator==(const VeranoxPathSelfNode &) const = default;
};

// The state of that node.
struct VeranoxPathProfileStatus {
    Q_GADGET
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString backendState MEMBER backendState)

public:
    bool ok = false;
    QString backendState;
    std::optional<VeranoxPathSelfNode> selfNode;

    bool operator==(const VeranoxPathProfileStatus &) const = default;
};

// What a name resolves to inside the tailnet.
struct VeranoxDNSReport {
    Q_GADGET
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString profile MEMBER profile)
    Q_PROPERTY(QString host MEMBER host)
    Q_PROPERTY(QString network MEMBER network)
    Q_PROPERTY(QStringList addresses MEMBER addresses)
    Q_PROPERTY(QString error MEMBER error)

public:
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
    Q_GADGET
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(bool direct MEMBER direct)
    Q_PROPERTY(bool derp MEMBER derp)
    Q_PROPERTY(bool peerRelay MEMBER peerRelay)
    Q_PROPERTY(QString error MEMBER error)
    Q_PROPERTY(QString commandDuration MEMBER commandDuration)

public:
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
    Q_GADGET
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString url MEMBER url)
    Q_PROPERTY(QString method MEMBER method)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(qint64 statusCode MEMBER statusCode)
    Q_PROPERTY(QString contentType MEMBER contentType)
    Q_PROPERTY(qint64 totalMS MEMBER totalMS)
    Q_PROPERTY(qint64 timeToHeadersMS MEMBER timeToHeadersMS)
    Q_PROPERTY(qint64 timeToFirstBodyByteMS MEMBER timeToFirstBodyByteMS)
    Q_PROPERTY(qint64 bytesRead MEMBER bytesRead)
    Q_PROPERTY(QString error MEMBER error)

public:
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
    Q_GADGET
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString error MEMBER error)

public:
    bool ok = false;
    QString error;

    bool operator==(const VeranoxNetcheckReport &) const = default;
};

// Which profile owns a target, and how far a request to it gets.
struct VeranoxPathReport {
    Q_GADGET
    Q_PROPERTY(QString profile MEMBER profile)
    Q_PROPERTY(QString profileBackend MEMBER profileBackend)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(QString host MEMBER host)
    Q_PROPERTY(QString ruleSuffix MEMBER ruleSuffix)
    Q_PROPERTY(QString routeType MEMBER routeType)
    Q_PROPERTY(QString ipRoute MEMBER ipRoute)
    Q_PROPERTY(QString profileSocket MEMBER profileSocket)
    Q_PROPERTY(QString profileHTTPProxy MEMBER profileHTTPProxy)
    Q_PROPERTY(QString profileSOCKS5Proxy MEMBER profileSOCKS5Proxy)
    Q_PROPERTY(qint64 profileUDPPort MEMBER profileUDPPort)
    Q_PROPERTY(QString routerHTTPProxy MEMBER routerHTTPProxy)
    Q_PROPERTY(QString summary MEMBER summary)
    Q_PROPERTY(QStringList recommendations MEMBER recommendations)
    Q_PROPERTY(bool routeMatched READ routeMatched)

public:
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
