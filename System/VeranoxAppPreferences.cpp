#include "System/VeranoxAppPreferences.h"

using namespace Qt::StringLiterals;

namespace {

namespace key {
const QString startServiceOnLaunch = u"veranox.startServiceOnLaunch"_s;
const QString autoConfigurePAC = u"veranox.autoConfigurePAC"_s;
const QString settingsShortcut = u"veranox.settingsShortcut"_s;
const QString customTitle = u"veranox.customSettingsShortcutTitle"_s;
const QString customKeyCode = u"veranox.customSettingsShortcutKeyCode"_s;
const QString customModifiers = u"veranox.customSettingsShortcutModifiers"_s;
} // namespace key

} // namespace

VeranoxAppPreferences::VeranoxAppPreferences(
    std::unique_ptr<UserDefaults> defaults, std::unique_ptr<LoginItem> loginItem)
    : m_defaults(std::move(defaults)),
      m_loginItem(std::move(loginItem)),
      m_launchAtLogin(m_loginItem->isEnabled()),
      m_startServiceOnLaunch(storedFlag(key::startServiceOnLaunch)),
      m_autoConfigurePAC(storedFlag(key::autoConfigurePAC)),
      m_settingsShortcutID(storedText(key::settingsShortcut, VeranoxGlobalShortcut::presets().first().id)),
      m_customTitle(storedText(key::customTitle, {})),
      m_customKeyCode(storedNumber(key::customKeyCode)),
      m_customModifiers(storedNumber(key::customModifiers))
{
}

VeranoxAppPreferences::~VeranoxAppPreferences() = default;

bool VeranoxAppPreferences::storedFlag(const QString &key) const
{
    const QVariant value = m_defaults->value(key);
    return value.typeId() == QMetaType::Bool ? value.toBool() : true;
}

QString VeranoxAppPreferences::storedText(const QString &key, const QString &fallback) const
{
    const QVariant value = m_defaults->value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : fallback;
}

std::uint32_t VeranoxAppPreferences::storedNumber(const QString &key) const
{
    const QVariant value = m_defaults->value(key);
    const qint64 number = value.typeId() == QMetaType::LongLong ? value.toLongLong() : 0;
    return std::in_range<std::uint32_t>(number) ? static_cast<std::uint32_t>(number) : 0;
}

void VeranoxAppPreferences::setStartServiceOnLaunch(bool on)
{
    if (std::exchange(m_startServiceOnLaunch, on) == on)
        return;
    m_defaults->setValue(key::startServiceOnLaunch, on);
    Q_EMIT startServiceOnLaunchChanged();
}

void VeranoxAppPreferences::setAutoConfigurePAC(bool on)
{
    if (std::exchange(m_autoConfigurePAC, on) == on)
        return;
    m_defaults->setValue(key::autoConfigurePAC, on);
    Q_EMIT autoConfigurePACChanged();
}

void VeranoxAppPreferences::setSettingsShortcutID(const QString &id)
{
    // A recorded combination may have changed beneath the same id, so that this is told each time.
    m_settingsShortcutID = id;
    m_defaults->setValue(key::settingsShortcut, id);
    Q_EMIT settingsShortcutIDChanged();
}

void VeranoxAppPreferences::setCustomSettingsShortcut(
    const QString &title, std::uint32_t keyCode, std::uint32_t carbonModifiers)
{
    m_customTitle = title;
    m_customKeyCode = keyCode;
    m_customModifiers = carbonModifiers;
    m_defaults->setValue(key::customTitle, title);
    m_defaults->setValue(key::customKeyCode, static_cast<qint64>(keyCode));
    m_defaults->setValue(key::customModifiers, static_cast<qint64>(carbonModifiers));
}

void VeranoxAppPreferences::setLaunchAtLogin(bool enabled)
{
    setLastError({});
    if (enabled != m_loginItem->isEnabled()) {
        if (const auto done = enabled ? m_loginItem->add() : m_loginItem->remove(); !done)
            setLastError(done.error());
    }
    mirrorLaunchAtLogin();
}

void VeranoxAppPreferences::mirrorLaunchAtLogin()
{
    const bool enabled = m_loginItem->isEnabled();
    if (std::exchange(m_launchAtLogin, enabled) != enabled)
        Q_EMIT launchAtLoginChanged();
}

void VeranoxAppPreferences::setLastError(const QString &error)
{
    if (std::exchange(m_lastError, error) != error)
        Q_EMIT lastErrorChanged();
}

std::optional<VeranoxGlobalShortcut> VeranoxAppPreferences::settingsShortcut() const
{
    if (m_settingsShortcutID != "custom"_L1)
        return VeranoxGlobalShortcut::shortcut(m_settingsShortcutID);
    if (m_customKeyCode == 0 || m_customModifiers == 0)
        return std::nullopt;
    return VeranoxGlobalShortcut{m_settingsShortcutID, m_customTitle, m_customKeyCode, m_customModifiers};
}

QString VeranoxAppPreferences::settingsShortcutTitle() const
{
    if (m_settingsShortcutID == "off"_L1)
        return u"Off"_s;
    const auto shortcut = settingsShortcut();
    return shortcut ? shortcut->title : u"Set Shortcut"_s;
}
