#include "Platform/Linux/DesktopTheme.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView portalService{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView settingsInterface{"org.freedesktop.portal.Settings"};
constexpr QLatin1StringView appearanceGroup{"org.freedesktop.appearance"};
constexpr QLatin1StringView schemeKey{"color-scheme"};
constexpr QLatin1StringView accentKey{"accent-color"};
constexpr QLatin1StringView gnomeGroup{"org.gnome.desktop.interface"};
constexpr QLatin1StringView gnomeMotionKey{"enable-animations"};
constexpr QLatin1StringView kdeGroup{"org.kde.kdeglobals.KDE"};
constexpr QLatin1StringView kdeMotionKey{"AnimationDurationFactor"};

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

// Red, green and blue from 0 to 1. Anything else, and above all a number out of that range, is no accent.
std::optional<QColor> accentFrom(const QVariant &value)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(ddd)"_L1)
        return std::nullopt;
    double red = 0;
    double green = 0;
    double blue = 0;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto isPart = [](double part) { return part >= 0 && part <= 1; };
    if (!isPart(red) || !isPart(green) || !isPart(blue))
        return std::nullopt;
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

// A factor that is written as a text; 0 for no motion.
bool isZero(const QVariant &value)
{
    bool isNumber = false;
    return value.toString().toDouble(&isNumber) == 0.0 && isNumber;
}

} // namespace

DesktopTheme::DesktopTheme(const QDBusConnection &bus, const QStringList &desktopNames, QObject *parent)
    : SystemTheme(parent),
      m_bus(bus),
      m_portal(portalService, bus, QDBusServiceWatcher::WatchForRegistration),
      m_panelIsAlwaysDark(hasDarkPanel(desktopNames)),
      m_told(dress())
{
    connect(&m_palette, &PaletteWatcher::paletteChanged, this, &DesktopTheme::noteChange);
    connect(&m_portal, &QDBusServiceWatcher::serviceRegistered, this, &DesktopTheme::askPortal);
    m_bus.connect(
        portalService, portalPath, settingsInterface, u"SettingChanged"_s, this, SLOT(handleSetting(QDBusMessage)));
    askPortal();
}

bool DesktopTheme::isDark() const
{
    return m_scheme == Scheme::noPreference ? PaletteWatcher::isDark() : m_scheme == Scheme::dark;
}

bool DesktopTheme::isPanelDark() const
{
    return m_panelIsAlwaysDark || isDark();
}

void DesktopTheme::handleSetting(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    adopt(arguments.value(0).toString(), arguments.value(1).toString(), unwrapped(arguments.value(2)));
    noteChange();
}

void DesktopTheme::askPortal()
{
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"ReadAll"_s);
    call << QStringList{appearanceGroup, gnomeGroup, kdeGroup};
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        adopt(finished->reply());
    });
}

void DesktopTheme::adopt(const QDBusMessage &settings)
{
    if (settings.type() != QDBusMessage::ReplyMessage || settings.signature() != "a{sa{sv}}"_L1)
        return; // there is no such portal, and the palette stands
    const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(settings.arguments().constFirst());
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        for (auto entry = group->cbegin(); entry != group->cend(); ++entry)
            adopt(group.key(), entry.key(), unwrapped(entry.value()));
    noteChange();
}

void DesktopTheme::adopt(const QString &group, const QString &key, const QVariant &value)
{
    if (group == appearanceGroup && key == schemeKey)
        m_scheme = schemeFrom(value);
    else if (group == appearanceGroup && key == accentKey)
        m_accent = accentFrom(value);
    else if (group == gnomeGroup && key == gnomeMotionKey)
        m_gnomeRests = value.metaType() == QMetaType::fromType<bool>() && !value.toBool();
    else if (group == kdeGroup && key == kdeMotionKey)
        m_kdeRests = isZero(value);
}

DesktopTheme::Scheme DesktopTheme::schemeFrom(const QVariant &value)
{
    const auto scheme = static_cast<Scheme>(value.toUInt());
    return scheme == Scheme::dark || scheme == Scheme::light ? scheme : Scheme::noPreference;
}

void DesktopTheme::noteChange()
{
    if (dress() == m_told)
        return;
    m_told = dress();
    Q_EMIT changed();
}
