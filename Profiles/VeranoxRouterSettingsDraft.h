#pragma once
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Values/VeranoxDraftError.h"
#include <QMetaType>
#include <optional>

// The router's settings as a person types them.
struct VeranoxRouterSettingsDraft {
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
