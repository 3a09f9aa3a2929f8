#pragma once
#include "Platform/Appearance.h"
#include "Platform/PaletteWatcher.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QStringList>

// The appearance of a Linux desktop: the colour scheme that the desktop portal tells, else the palette of the
// application. A desktop whose panel is dark in either scheme is known by its name.
class DesktopAppearance : public Appearance {
    Q_OBJECT

public:
    // The names of the desktop, most specific first, as XDG_CURRENT_DESKTOP lists them.
    DesktopAppearance(const QDBusConnection &bus, const QStringList &desktopNames, QObject *parent = nullptr);

    bool isDark() const override;
    bool isPanelDark() const override;
    bool colorsTemplateImages() const override { return false; }

private Q_SLOTS:
    // A setting has changed: group, key, value. (QtDBus does not connect a slot that takes a variant.)
    void handleSetting(const QDBusMessage &message);

private:
    // The values of the portal's "color-scheme".
    enum class Scheme : uint { noPreference = 0, dark = 1, light = 2 };

    void askPortal();
    void setScheme(const QVariant &value);
    void noteChange();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portal;
    PaletteWatcher m_palette;
    bool m_panelIsAlwaysDark;
    Scheme m_scheme = Scheme::noPreference;
    bool m_wasDark = false;
};
