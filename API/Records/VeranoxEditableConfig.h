#pragma once
#include "API/Records/VeranoxEditableProfile.h"
#include <QMap>

// The router section of the configuration document.
struct VeranoxEditableRouterConfig {
    QString httpProxy; // host:port
    QString socks5Proxy; // host:port
    QString pacListen; // host:port
    qint64 profileHTTPProxyBase = 0;
    qint64 profileSOCKS5ProxyBase = 0;
    qint64 profileUDPPortBase = 0; // 0: the service picks ports
    QString profileHostnameBase;
    qint64 tunnelListenBase = 0;

    // The section of a service that was never configured.
    static VeranoxEditableRouterConfig defaults();

    bool operator==(const VeranoxEditableRouterConfig &) const = default;
};

// The commands for the two Tailscale programs.
struct VeranoxEditableTailscaleConfig {
    QString tailscaleBin;
    QString tailscaledBin;

    bool operator==(const VeranoxEditableTailscaleConfig &) const = default;
};

// The service's folders; a leading tilde is the service's to expand.
struct VeranoxEditablePathsConfig {
    QString appSupportDir;
    QString configDir;

    bool operator==(const VeranoxEditablePathsConfig &) const = default;
};

struct VeranoxEditableSecurityConfig {
    bool requireLoopbackListeners = false;
    bool allowCrossProfileFallback = false;
    bool allowIPLiterals = false;
    bool allowUnknownTSNet = false;

    bool operator==(const VeranoxEditableSecurityConfig &) const = default;
};

// The service's configuration as this application edits it: read whole, changed in a copy, sent back whole.
struct VeranoxEditableConfig {
    qint64 version = 0;
    VeranoxEditableRouterConfig router;
    VeranoxEditableTailscaleConfig tailscale;
    VeranoxEditablePathsConfig paths;
    QMap<QString, VeranoxEditableProfile> profiles; // by name
    VeranoxEditableSecurityConfig security;

    // The document to begin with while the service holds none and the first profile is made.
    static VeranoxEditableConfig emptyForFirstProfile();

    bool operator==(const VeranoxEditableConfig &) const = default;
};
