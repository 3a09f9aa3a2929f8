#include "Platform/Linux/DesktopAppearance.h"
#include "Tests/Support/Eventually.h"
#include <QApplication>
#include <QDBusVariant>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr uint noPreference = 0;
constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

// The settings of a desktop portal.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(const QVariant &scheme) : m_scheme(scheme)
    {
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
    // Portals wrap the value twice.
    QDBusVariant Read(const QString &group, const QString &key)
    {
        ++reads;
        EXPECT_EQ(group, u"org.freedesktop.appearance"_s);
        EXPECT_EQ(key, u"color-scheme"_s);
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme)));
    }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    QVariant m_scheme;
};

class DesktopAppearanceTest : public ::testing::Test {
protected:
    DesktopAppearance &start(const QStringList &desktopNames = {u"XFCE"_s})
    {
        appearance = std::make_unique<DesktopAppearance>(QDBusConnection::sessionBus(), desktopNames);
        QObject::connect(appearance.get(), &Appearance::changed, appearance.get(), [this] { ++changes; });
        return *appearance;
    }

    bool becomesDark(bool dark)
    {
        return eventually([&] { return appearance->isDark() == dark; });
    }

    static void setPalette(const QColor &window, const QColor &text)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QApplication::setPalette(palette);
    }

    std::unique_ptr<DesktopAppearance> appearance;
    int changes = 0;
};

} // namespace

TEST_F(DesktopAppearanceTest, TakesTheSchemeOfThePortal)
{
    Portal portal(prefersDark);
    start();
    EXPECT_TRUE(becomesDark(true));
    EXPECT_TRUE(appearance->isPanelDark());
    EXPECT_GT(appearance->panelForeground().lightness(), 200);
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopAppearanceTest, FollowsThePortal)
{
    Portal portal(prefersLight);
    start();
    ASSERT_TRUE(eventually([&] { return portal.reads >= 1; }));
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersDark);
    EXPECT_TRUE(becomesDark(true));
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersLight);
    EXPECT_TRUE(becomesDark(false));
    EXPECT_LT(appearance->panelForeground().lightness(), 60);
    EXPECT_EQ(changes, 2);
}

TEST_F(DesktopAppearanceTest, IgnoresOtherSettingsAndRepeats)
{
    Portal portal(prefersDark);
    start();
    ASSERT_TRUE(becomesDark(true));
    portal.change(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, prefersLight);
    portal.change(u"org.freedesktop.appearance"_s, u"accent-color"_s, prefersLight);
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersDark);
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, prefersLight);
    EXPECT_TRUE(becomesDark(false));
    EXPECT_EQ(changes, 2) << "dark at the start, light at the end";
}

TEST_F(DesktopAppearanceTest, AValueThatMakesNoSenseIsNoPreference)
{
    for (const QVariant &value : {QVariant(noPreference), QVariant(7u), QVariant(u"dark"_s)}) {
        Portal portal(value);
        start();
        ASSERT_TRUE(eventually([&] { return portal.reads >= 1; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(appearance->isDark(), PaletteWatcher::isDark());
    }
}

TEST_F(DesktopAppearanceTest, AsksAPortalThatComesLater)
{
    start();
    QCoreApplication::processEvents();
    EXPECT_FALSE(appearance->isDark());
    Portal portal(prefersDark);
    EXPECT_TRUE(becomesDark(true));
}

TEST_F(DesktopAppearanceTest, WithoutAPortalThePaletteDecides)
{
    start();
    setPalette(Qt::black, Qt::white);
    EXPECT_TRUE(eventually([this] { return changes == 1; }));
    EXPECT_TRUE(appearance->isDark());
    setPalette(Qt::white, Qt::black);
    EXPECT_TRUE(eventually([this] { return changes == 2; }));
    EXPECT_FALSE(appearance->isDark());
}

TEST_F(DesktopAppearanceTest, TheTopBarOfGnomeIsAlwaysDark)
{
    start({u"ubuntu"_s, u"GNOME"_s});
    EXPECT_FALSE(appearance->isDark());
    EXPECT_TRUE(appearance->isPanelDark());
}

#include "DesktopAppearanceTests.moc"
