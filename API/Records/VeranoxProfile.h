#pragma once
#include <QMetaType>
#include <QStringList>
#include <optional>

// What the service found when it last looked at a profile's node.
struct VeranoxProfileStatus {
    bool ok = false; // the node answered
    QString backendState; // the node's own word, for example "Running" or "NeedsLogin"
    QString raw;
    QString error;
    QString checkedAt; // as sent

    // The status of a profile that the service has not looked at.
    static VeranoxProfileStatus notCheckedYet();

    bool operator==(const VeranoxProfileStatus &) const = default;
};

// One routing profile as the service reports it.
struct VeranoxProfile {
    QString name; // the profile's key in the configuration
    QString displayName; // title shown to the user
    QString icon; // as sent; draw profileIconName()
    QString color; // as sent; draw profileAccentColor()
    QString hostname; // router host name of the node
    QString backend; // "tsnet" or "tailscaled"
    QStringList suffixes; // DNS suffixes routed to this profile
    bool matchRoot = false; // the bare suffix itself also matches
    QStringList ipRoutes; // address ranges routed to this profile
    QString stateDir;
    QString socket;
    QString httpProxy; // host:port
    QString socks5Proxy; // host:port
    std::optional<qint64> udpPort;
    VeranoxProfileStatus status;

    // Identity in lists.
    const QString &id() const { return name; }

    // The symbol to draw: the icon if it is a known one, else a guess from the title.
    QString profileIconName() const;

    // The identifier of the colour to draw: the colour if it is a known one, else a guess from the title.
    QString profileAccentColor() const;

    bool operator==(const VeranoxProfile &) const = default;
};

Q_DECLARE_METATYPE(VeranoxProfileStatus)
Q_DECLARE_METATYPE(VeranoxProfile)
