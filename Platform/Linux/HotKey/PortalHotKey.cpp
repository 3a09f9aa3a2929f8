#include "Platform/Linux/HotKey/PortalHotKey.h"
#include "Platform/Linux/HotKey/KeySymbols.h"
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>

using namespace Qt::StringLiterals;

// One shortcut as the portal takes it: an identifier and its properties.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
Q_DECLARE_METATYPE(PortalShortcut)

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace {

constexpr QLatin1StringView portal("org.freedesktop.portal.Desktop");
constexpr QLatin1StringView portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1StringView shortcuts("org.freedesktop.portal.GlobalShortcuts");
constexpr QLatin1StringView openSettings("open-settings"); // our shortcut's identifier within its session

QDBusMessage call(const QString &method)
{
    return QDBusMessage::createMethodCall(portal, portalPath, shortcuts, method);
}

// The first argument of an answer: 0 when the person agreed, another number when not.
bool isAgreement(const QDBusMessage &response)
{
    return !response.arguments().isEmpty() && response.arguments().constFirst() == QVariant(0U);
}

} // namespace

// Slots that take the whole message: Qt refuses a signature with a blank in it, which a formatter puts there.
PortalHotKey::PortalHotKey(QDBusConnection bus) : m_bus(std::move(bus))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_bus.connect(portal, portalPath, shortcuts, u"Activated"_s, this, SLOT(activated(QDBusMessage)));
}

PortalHotKey::~PortalHotKey()
{
    closeSession();
}

void PortalHotKey::configure(std::optional<VeranoxGlobalShortcut> shortcut)
{
    closeSession();
    m_shortcut = std::move(shortcut);
    if (m_shortcut && portalTrigger(*m_shortcut))
        createSession();
}

QString PortalHotKey::nextToken()
{
    return u"veranox%1"_s.arg(++m_tokens);
}

// The answer comes as a signal of an object whose path follows from the caller's name and the token: listening before
// the call is the only way not to miss it.
void PortalHotKey::expectAnswer(const QString &token, const char *slot)
{
    const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
    const QString path = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
    m_bus.connect(portal, path, u"org.freedesktop.portal.Request"_s, u"Response"_s, this, slot);
    m_expected = token;
}

// Whether this answers the latest request. The combination may have changed since an earlier one.
bool PortalHotKey::isExpected(const QDBusMessage &response) const
{
    return !m_expected.isEmpty() && response.path().endsWith(u'/' + m_expected);
}

void PortalHotKey::createSession()
{
    const QString token = nextToken();
    expectAnswer(token, SLOT(sessionAnswered(QDBusMessage)));
    QDBusMessage request = call(u"CreateSession"_s);
    request << QVariantMap{{u"handle_token"_s, token}, {u"session_handle_token"_s, token}};
    m_bus.asyncCall(request);
}

void PortalHotKey::sessionAnswered(const QDBusMessage &response)
{
    const QString session = isAgreement(response) && response.arguments().size() > 1
        ? qdbus_cast<QVariantMap>(response.arguments().at(1)).value(u"session_handle"_s).toString()
        : QString();
    if (session.isEmpty())
        return;
    if (!isExpected(response)) {
        close(session);
        return;
    }
    m_session = session;
    bind();
}

void PortalHotKey::bind()
{
    const QString token = nextToken();
    expectAnswer(token, SLOT(bindAnswered(QDBusMessage)));
    const QVariantMap properties{{u"description"_s, u"Bring the Veranox settings forward"_s},
        {u"preferred_trigger"_s, portalTrigger(*m_shortcut).value_or(QString())}};
    QDBusMessage request = call(u"BindShortcuts"_s);
    request << QVariant::fromValue(QDBusObjectPath(m_session))
            << QVariant::fromValue(QList<PortalShortcut>{{openSettings, properties}}) << QString()
            << QVariantMap{{u"handle_token"_s, token}};
    m_bus.asyncCall(request);
}

void PortalHotKey::bindAnswered(const QDBusMessage &response)
{
    if (isExpected(response))
        m_isBound = isAgreement(response);
}

void PortalHotKey::activated(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments(); // session, identifier, and more that does not matter here
    if (arguments.size() < 2)
        return;
    const QString session = qvariant_cast<QDBusObjectPath>(arguments.at(0)).path();
    if (session == m_session && arguments.at(1).toString() == openSettings)
        Q_EMIT triggered();
}

void PortalHotKey::closeSession()
{
    m_isBound = false;
    m_expected.clear();
    if (!m_session.isEmpty())
        close(std::exchange(m_session, {}));
}

void PortalHotKey::close(const QString &session)
{
    m_bus.asyncCall(QDBusMessage::createMethodCall(portal, session, u"org.freedesktop.portal.Session"_s, u"Close"_s));
}
