#pragma once
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Values/VeranoxDraftError.h"
#include <QMetaType>
#include <optional>

// The router's settings as a person types them.
struct VeranoxRouterSettingsDraft {
    Q_GADGET
    Q_PROPERTY(QString httpProxy MEMBER httpProxy)
    Q_PROPERTY(QString socks5Proxy MEMBER socks5Proxy)
    Q_PROPERTY(QString pacListen MEMBER pacListen)
    Q_PROPERTY(QString profileHTTPProxyBase MEMBER profileHTTPProxyBase)
    Q_PROPERTY(QString profileSOCKS5ProxyBase MEMBER profileSOCKS5ProxyBase)
    Q_PROPERTY(QString profileUDPPortBase MEMBER profileUDPPortBase)
    Q_PROPERTY(QString profileHostnameBase MEMBER profileHostnameBase)
    Q_PROPERTY(QString tunnelListenBase MEMBER tunnelListenBase)

public:
    QString httpProxy;
    QString socks5Proxy;
    QString pacListen;
    QString profileHTTPProxyBase;
    QString profileSOCKS5ProxyBase;
    QString profileUDPPortBase;
    QString profileHostnameBase;
    QString tunnelListenBase;

    VeranoxRouterSettingsDraft() = default;
    explicit VeranoxRouterSettingsDraft(const VeranoxEditableRouterConfig &router);

    // The settings to save, normalised, or the first problem. Ports must differ, whatever their hosts and protocols;
    // what the draft does not hold is kept from `existing`.
    VeranoxDraftResult<VeranoxEditableRouterConfig> makeRouter(const VeranoxEditableRouterConfig &existing) const;

    // The prefix of generated host names: letters, digits and inner hyphens, in lower case.
    static VeranoxDraftResult<QString> hostnameBase(const QString &text);

    bool operator==(const VeranoxRouterSettingsDraft &) const = default;
};

// Whether there is something to save: false while no document is loaded, true for a draft that cannot be saved as it
// is.
bool routerDraftHasChanges(
    const VeranoxRouterSettingsDraft &draft, const std::optional<VeranoxEditableConfig> &document);

Q_DECLARE_METATYPE(VeranoxRouterSettingsDraft)
