#include "Platform/Linux/DesktopTheme.h"
#include "Tests/Support/Eventually.h"
#include <QApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr uint noPreference = 0;
constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

using Settings = QMap<QString, QVariantMap>;

struct Rgb {
    double red = 0;
    double green = 0;
    double blue = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Rgb &color)
{
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Rgb &color)
{
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return argument;
}

// The settings of a desktop portal.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(const QVariant &scheme)
        : Portal(Settings{{u"org.freedesktop.appearance"_s, {{u"color-scheme"_s, scheme}}}})
    {
    }
    explicit Portal(Settings settings) : m_settings(std::move(settings))
    {
        qDBusRegisterMetaType<Settings>();
        qDBusRegisterMetaType<Rgb>();
        m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }
    ~Portal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    void change(const QString &group, const QString &key, const QVariant &value)
    {
        Q_EMIT SettingChanged(group, key, QDBusVariant(value));
    }

    int reads = 0;

public Q_SLOTS:
    Settings ReadAll(const QStringList &groups)
    {
        ++reads;
        EXPECT_TRUE(groups.contains(u"org.freedesktop.appearance"_s));
        return m_settings;
    }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    Settings m_settings;
};

class DesktopThemeTest : public ::testing::Test {
protected:
    DesktopTheme &start(const QStringList &desktopNames = {u"XFCE"_s})
    {
        theme = std::make_unique<DesktopTheme>(QDBusConnection::sessionBus(), desktopNames);
        QObject::connect(theme.get(), &SystemTheme::changed, theme.get(), [this] { ++changes; });
        return *theme;
    }

    bool becomesDark(bool dark)
    {
        return eventually([&] { return theme->isDark() == dark; });
    }

    static void setPalette(const QColor &window, const QColor &text)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QApplication::setPalette(palette);
    }

    std::unique_ptr<DesktopTheme> theme;
    int changes = 0;
};

} // namespace

TEST_F(DesktopThemeTest, TakesTheSchemeOfThePortal)
{
    Portal portal(prefersDark);
    start();
    EXPECT_TRUE(becomesDark(true));
    EXPECT_TRUE(theme->isPanelDark());
    EXPECT_GT(theme->panelForeground().lightness(), 200);
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopThemeTest, FollowsThePortal)
{
    Portal portal(prefersLight);
    start();
    ASSERT_TRUE(eventually([&] { return portal.reads >= 1; }));
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersDark);
    EXPECT_TRUE(becomesDark(true));
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersLight);
    EXPECT_TRUE(becomesDark(false));
    EXPECT_LT(theme->panelForeground().lightness(), 60);
    EXPECT_EQ(changes, 2);
}

TEST_F(DesktopThemeTest, IgnoresOtherSettingsAndRepeats)
{
    Portal portal(prefersDark);
    start();
    ASSERT_TRUE(becomesDark(true));
    portal.change(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, prefersLight);
    portal.change(u"org.freedesktop.appearance"_s, u"contrast"_s, prefersLight);
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersDark);
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersLight);
    EXPECT_TRUE(becomesDark(false));
    EXPECT_EQ(changes, 2) << "dark at the start, light at the end";
}

TEST_F(DesktopThemeTest, AValueThatMakesNoSenseIsNoPreference)
{
    for (const QVariant &value : {QVariant(noPreference), QVariant(7u), QVariant(u"dark"_s)}) {
        Portal portal(value);
        start();
        ASSERT_TRUE(eventually([&] { return portal.reads >= 1; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(theme->isDark(), PaletteWatcher::isDark());
    }
}

TEST_F(DesktopThemeTest, TakesTheAccentOfThePortalAndFollowsIt)
{
    Portal portal(
        Settings{{u"org.freedesktop.appearance"_s, {{u"accent-color"_s, QVariant::fromValue(Rgb{1, 0, 0})}}}});
    start();
    EXPECT_TRUE(eventually([&] { return theme->accent() == QColor(Qt::red).toRgb(); }));
    portal.change(u"org.freedesktop.appearance"_s, u"accent-color"_s, QVariant::fromValue(Rgb{0, 0, 1}));
    EXPECT_TRUE(eventually([&] { return theme->accent() == QColor(Qt::blue).toRgb(); }));
    for (const QVariant &none : {QVariant::fromValue(Rgb{-1, -1, -1}), QVariant::fromValue(Rgb{0, 0, 1.5}),
             QVariant(prefersDark), QVariant(u"red"_s), QVariant::fromValue(Rgb{0, std::nan(""), 0})}) {
        portal.change(u"org.freedesktop.appearance"_s, u"accent-color"_s, QVariant::fromValue(Rgb{0, 0, 1}));
        EXPECT_TRUE(eventually([&] { return theme->accent().has_value(); }));
        portal.change(u"org.freedesktop.appearance"_s, u"accent-color"_s, none);
        EXPECT_TRUE(eventually([&] { return !theme->accent(); }));
    }
}

TEST_F(DesktopThemeTest, RestsWhereGnomeOrKdeAskForIt)
{
    struct Case {
        const char *group;
        const char *key;
        QVariant rest;
        QVariant motion;
    };
    const Case cases[] = {
        {"org.gnome.desktop.interface", "enable-animations", false, true},
        {"org.gnome.desktop.interface", "enable-animations", false, u"no"_s},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", u"0"_s, u"0.5"_s},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", 0.0, u""_s},
    };
    for (const auto &[group, key, rest, motion] : cases) {
        Portal portal(Settings{{QLatin1StringView(group), {{QLatin1StringView(key), rest}}}});
        start();
        EXPECT_TRUE(eventually([&] { return theme->prefersReducedMotion(); })) << group;
        EXPECT_FALSE(theme->isDark());
        portal.change(QLatin1StringView(group), QLatin1StringView(key), motion);
        EXPECT_TRUE(eventually([&] { return !theme->prefersReducedMotion(); })) << group;
    }
}

TEST_F(DesktopThemeTest, AsksAPortalThatComesLater)
{
    start();
    QCoreApplication::processEvents();
    EXPECT_FALSE(theme->isDark());
    Portal portal(prefersDark);
    EXPECT_TRUE(becomesDark(true));
}

TEST_F(DesktopThemeTest, WithoutAPortalThePaletteDecides)
{
    start();
    setPalette(Qt::black, Qt::white);
    EXPECT_TRUE(eventually([this] { return changes == 1; }));
    EXPECT_TRUE(theme->isDark());
    setPalette(Qt::white, Qt::black);
    EXPECT_TRUE(eventually([this] { return changes == 2; }));
    EXPECT_FALSE(theme->isDark());
}

TEST_F(DesktopThemeTest, TheTopBarOfGnomeIsAlwaysDark)
{
    start({u"ubuntu"_s, u"GNOME"_s});
    EXPECT_FALSE(theme->isDark());
    EXPECT_TRUE(theme->isPanelDark());
}

#include "DesktopThemeTests.moc"
