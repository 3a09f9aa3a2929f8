#include "Profiles/VeranoxRouterSettingsDraft.h"
#include "API/Values/VeranoxLoopback.h"
#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Fills a router's fields one by one and stops at the first problem, so that the list of fields stays a list.
class Validation {
public:
    explicit Validation(VeranoxEditableRouterConfig existing) : m_router(std::move(existing)) { }

    Validation &address(QString VeranoxEditableRouterConfig::*field, const QString &text, const QString &label)
    {
        return keep(field, [&] { return VeranoxLoopback::normalizedAddress(text, label); });
    }

    Validation &port(
        qint64 VeranoxEditableRouterConfig::*field, const QString &text, const QString &label, bool allowsZero = false)
    {
        return keep(field, [&] { return VeranoxLoopback::port(text, label, allowsZero); });
    }

    Validation &hostnameBase(const QString &text)
    {
        return keep(&VeranoxEditableRouterConfig::profileHostnameBase,
            [&] { return VeranoxRouterSettingsDraft::hostnameBase(text); });
    }

    Validation &portsDiffer();

    VeranoxDraftResult<VeranoxEditableRouterConfig> result() const
    {
        if (m_problem)
            return std::unexpected(*m_problem);
        return m_router;
    }

private:
    template <class Field, class Check> Validation &keep(Field VeranoxEditableRouterConfig::*field, Check check)
    {
        if (m_problem)
            return *this;
        if (const auto value = check())
            m_router.*field = *value;
        else
            m_problem = value.error();
        return *this;
    }

    VeranoxEditableRouterConfig m_router;
    std::optional<VeranoxDraftError> m_problem;
};

qint64 portOf(const QString &normalizedAddress)
{
    return normalizedAddress.sliced(normalizedAddress.lastIndexOf(u':') + 1).toLongLong();
}

Validation &Validation::portsDiffer()
{
    if (m_problem)
        return *this;
    struct Claim {
        QString label;
        qint64 port;
    };
    QList<Claim> claims{
        {u"HTTP proxy"_s, portOf(m_router.httpProxy)},
        {u"SOCKS5 proxy"_s, portOf(m_router.socks5Proxy)},
        {u"PAC server"_s, portOf(m_router.pacListen)},
        {u"Profile HTTP base"_s, m_router.profileHTTPProxyBase},
        {u"Profile SOCKS5 base"_s, m_router.profileSOCKS5ProxyBase},
        {u"Tunnel base port"_s, m_router.tunnelListenBase},
    };
    if (m_router.profileUDPPortBase != 0)
        claims.append({u"Profile UDP base"_s, m_router.profileUDPPortBase});

    QSet<qint64> assigned;
    for (const Claim &claim : claims) {
        if (assigned.contains(claim.port)) {
            m_problem = VeranoxDraftError(claim.label + u" uses a port that is already assigned."_s);
            break;
        }
        assigned.insert(claim.port);
    }
    return *this;
}

bool isHostnameCharacter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'0' && character <= u'9') || character == u'-';
}

} // namespace

VeranoxRouterSettingsDraft::VeranoxRouterSettingsDraft(const VeranoxEditableRouterConfig &router)
    : httpProxy(router.httpProxy),
      socks5Proxy(router.socks5Proxy),
      pacListen(router.pacListen),
      profileHTTPProxyBase(QString::number(router.profileHTTPProxyBase)),
      profileSOCKS5ProxyBase(QString::number(router.profileSOCKS5ProxyBase)),
      profileUDPPortBase(QString::number(router.profileUDPPortBase)),
      profileHostnameBase(router.profileHostnameBase),
      tunnelListenBase(QString::number(router.tunnelListenBase))
{
}

VeranoxDraftResult<VeranoxEditableRouterConfig> VeranoxRouterSettingsDraft::makeRouter(
    const VeranoxEditableRouterConfig &existing) const
{
    using Router = VeranoxEditableRouterConfig;
    constexpr bool allowsZero = true;
    return Validation(existing)
        .address(&Router::httpProxy, httpProxy, u"HTTP proxy"_s)
        .address(&Router::socks5Proxy, socks5Proxy, u"SOCKS5 proxy"_s)
        .address(&Router::pacListen, pacListen, u"PAC server"_s)
        .port(&Router::profileHTTPProxyBase, profileHTTPProxyBase, u"Profile HTTP base"_s)
        .port(&Router::profileSOCKS5ProxyBase, profileSOCKS5ProxyBase, u"Profile SOCKS5 base"_s)
        .port(&Router::profileUDPPortBase, profileUDPPortBase, u"Profile UDP base"_s, allowsZero)
        .hostnameBase(profileHostnameBase)
        .port(&Router::tunnelListenBase, tunnelListenBase, u"Tunnel base port"_s)
        .portsDiffer()
        .result();
}

VeranoxDraftResult<QString> VeranoxRouterSettingsDraft::hostnameBase(const QString &text)
{
    QString base = text.trimmed().toLower();
    if (base.isEmpty())
        return draftError(u"Hostname base is required."_s);
    if (!std::ranges::all_of(base, isHostnameCharacter) || base.startsWith(u'-') || base.endsWith(u'-'))
        return draftError(u"Hostname base can contain letters, numbers, and hyphens only."_s);
    return base;
}

bool routerDraftHasChanges(
    const VeranoxRouterSettingsDraft &draft, const std::optional<VeranoxEditableConfig> &document)
{
    return document && draft.makeRouter(document->router) != document->router;
}
