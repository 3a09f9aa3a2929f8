#pragma once
#include "System/LoginItem.h"
#include "System/UserDefaults.h"
#include "System/VeranoxGlobalShortcut.h"
#include <QObject>
#include <memory>

// The settings that belong to the application and not to the service. Each one is kept as soon as it changes; launch at
// login is kept by the system itself and only mirrored here. Main thread only.
class VeranoxAppPreferences final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool startServiceOnLaunch READ startServiceOnLaunch WRITE setStartServiceOnLaunch NOTIFY
            startServiceOnLaunchChanged)
    Q_PROPERTY(bool autoConfigurePAC READ autoConfigurePAC WRITE setAutoConfigurePAC NOTIFY autoConfigurePACChanged)
    Q_PROPERTY(
        QString settingsShortcutID READ settingsShortcutID WRITE setSettingsShortcutID NOTIFY settingsShortcutIDChanged)
    Q_PROPERTY(QString settingsShortcutTitle READ settingsShortcutTitle NOTIFY settingsShortcutIDChanged)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged)

public:
    VeranoxAppPreferences(std::unique_ptr<UserDefaults> defaults, std::unique_ptr<LoginItem> loginItem);
    ~VeranoxAppPreferences() override;

    bool launchAtLogin() const { return m_launchAtLogin; }
    bool startServiceOnLaunch() const { return m_startServiceOnLaunch; }
    bool autoConfigurePAC() const { return m_autoConfigurePAC; }
    const QString &settingsShortcutID() const { return m_settingsShortcutID; } // a preset's id, "off" or "custom"
    const QString &customSettingsShortcutTitle() const { return m_customTitle; }
    std::uint32_t customSettingsShortcutKeyCode() const { return m_customKeyCode; }
    std::uint32_t customSettingsShortcutModifiers() const { return m_customModifiers; }
    const QString &lastError() const { return m_lastError; } // why launch at login could not be changed
    const UserDefaults &defaults() const { return *m_defaults; }

    void setStartServiceOnLaunch(bool on);
    void setAutoConfigurePAC(bool on);
    void setSettingsShortcutID(const QString &id);

    // Keeps a recorded combination. It takes effect with setSettingsShortcutID("custom"), which comes last.
    void setCustomSettingsShortcut(const QString &title, std::uint32_t keyCode, std::uint32_t carbonModifiers);

    // Asks the system; afterwards launchAtLogin() tells what it really did.
    void setLaunchAtLogin(bool enabled);

    // Reads from the system whether it starts the application at login.
    void mirrorLaunchAtLogin();

    // The combination in force. A recorded one counts only with a key code and modifiers.
    std::optional<VeranoxGlobalShortcut> settingsShortcut() const;

    // Its words: "Off", a combination, or the invitation to set one.
    QString settingsShortcutTitle() const;

Q_SIGNALS:
    void launchAtLoginChanged();
    void startServiceOnLaunchChanged();
    void autoConfigurePACChanged();
    void settingsShortcutIDChanged();
    void lastErrorChanged();

private:
    bool storedFlag(const QString &key) const;
    QString storedText(const QString &key, const QString &fallback) const;
    std::uint32_t storedNumber(const QString &key) const;
    void setLastError(const QString &error);

    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<LoginItem> m_loginItem;
    bool m_launchAtLogin;
    bool m_startServiceOnLaunch;
    bool m_autoConfigurePAC;
    QString m_settingsShortcutID;
    QString m_customTitle;
    std::uint32_t m_customKeyCode;
    std::uint32_t m_customModifiers;
    QString m_lastError;
};
