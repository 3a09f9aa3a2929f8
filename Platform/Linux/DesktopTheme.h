#pragma once
#include "Platform/PaletteWatcher.h"
#include "Platform/SystemTheme.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QStringList>

// The theme of a Linux desktop: the colour scheme, the accent and the wish for rest that the desktop portal tells,
// else the palette of the application, no accent and motion. A desktop whose panel is dark in either scheme is known by
// its name.
class DesktopTheme : public SystemTheme {
    Q_OBJECT

public:
    // The names of the desktop, most specific first, as XDG_CURRENT_DESKTOP lists them.
    DesktopTheme(const QDBusConnection &bus, const QStringList &desktopNames, QObject *parent = nullptr);

    bool isDark() const override;
    bool isPanelDark() const override;
    bool colorsTemplateImages() const override { return false; }
    bool prefersReducedMotion() const override { return m_gnomeRests || m_kdeRests; }
    std::optional<QColor> accent() const override { return m_accent; }

private Q_SLOTS:
    // A setting has changed: group, key, value. (QtDBus does not connect a slot that takes a variant.)
    void handleSetting(const QDBusMessage &message);

private:
    // The values of the portal's "color-scheme".
    enum class Scheme : uint { noPreference = 0, dark = 1, light = 2 };

    // The answers that windows and icon are drawn by.
    struct Dress {
        bool isDark = false;
        bool rests = false;
        std::optional<QColor> accent;
        bool operator==(const Dress &) const = default;
    };

    void askPortal();
    static Scheme schemeFrom(const QVariant &value);
    void adopt(const QDBusMessage &settings);
    void adopt(const QString &group, const QString &key, const QVariant &value);
    Dress dress() const { return {isDark(), prefersReducedMotion(), m_accent}; }
    void noteChange();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portal;
    PaletteWatcher m_palette;
    bool m_panelIsAlwaysDark;
    Scheme m_scheme = Scheme::noPreference;
    std::optional<QColor> m_accent;
    bool m_gnomeRests = false;
    bool m_kdeRests = false;
    Dress m_told;
};
