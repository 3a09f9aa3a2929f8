#include "Platform/Linux/DesktopAppearance.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView portalService{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView settingsInterface{"org.freedesktop.portal.Settings"};
constexpr QLatin1StringView appearanceGroup{"org.freedesktop.appearance"};
constexpr QLatin1StringView schemeKey{"color-scheme"};

// The top bar of GNOME Shell is dark whatever the scheme of the windows.
bool hasDarkPanel(const QStringList &desktopNames)
{
    return desktopNames.contains("GNOME"_L1, Qt::CaseInsensitive);
}

// Portals answer with a variant in a variant.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopAppearance::DesktopAppearance(const QDBusConnection &bus, const QStringList &desktopNames, QObject *parent)
    : Appearance(parent),
      m_bus(bus),
      m_portal(portalService, bus, QDBusServiceWatcher::WatchForRegistration),
      m_panelIsAlwaysDark(hasDarkPanel(desktopNames)),
      m_wasDark(isDark())
{
    connect(&m_palette, &PaletteWatcher::paletteChanged, this, &DesktopAppearance::noteChange);
    connect(&m_portal, &QDBusServiceWatcher::serviceRegistered, this, &DesktopAppearance::askPortal);
    m_bus.connect(
        portalService, portalPath, settingsInterface, u"SettingChanged"_s, this, SLOT(handleSetting(QDBusMessage)));
    askPortal();
}

bool DesktopAppearance::isDark() const
{
    return m_scheme == Scheme::noPreference ? PaletteWatcher::isDark() : m_scheme == Scheme::dark;
}

bool DesktopAppearance::isPanelDark() const
{
    return m_panelIsAlwaysDark || isDark();
}

void DesktopAppearance::handleSetting(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.value(0) == appearanceGroup && arguments.value(1) == schemeKey)
        setScheme(arguments.value(2));
}

void DesktopAppearance::askPortal()
{
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_s);
    call << QString(appearanceGroup) << QString(schemeKey);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        const QDBusMessage reply = finished->reply();
        if (reply.type() == QDBusMessage::ReplyMessage) // else there is no such portal and the palette stands
            setScheme(reply.arguments().value(0));
    });
}

void DesktopAppearance::setScheme(const QVariant &value)
{
    const uint scheme = unwrapped(value).toUInt();
    const bool isKnown = scheme == uint(Scheme::dark) || scheme == uint(Scheme::light);
    m_scheme = isKnown ? Scheme(scheme) : Scheme::noPreference;
    noteChange();
}

void DesktopAppearance::noteChange()
{
    if (isDark() == m_wasDark)
        return;
    m_wasDark = isDark();
    Q_EMIT changed();
}
