#include "System/VeranoxAppPreferences.h"
#include <QHash>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class MemoryDefaults final : public UserDefaults {
public:
    explicit MemoryDefaults(QHash<QString, QVariant> &values) : m_values(values) { }
    QVariant value(const QString &key) const override { return m_values.value(key); }
    void setValue(const QString &key, const QVariant &value) override { m_values.insert(key, value); }
    QString problem() const override { return {}; }

private:
    QHash<QString, QVariant> &m_values;
};

struct SystemLoginItem {
    bool enabled = false;
    QString refusal;
    int asked = 0;
};

class FakeLoginItem final : public LoginItem {
public:
    explicit FakeLoginItem(SystemLoginItem &system) : m_system(system) { }
    bool isEnabled() const override { return m_system.enabled; }
    std::expected<void, QString> add() override { return change(true); }
    std::expected<void, QString> remove() override { return change(false); }

private:
    std::expected<void, QString> change(bool enabled)
    {
        ++m_system.asked;
        if (!m_system.refusal.isEmpty())
            return std::unexpected(m_system.refusal);
        m_system.enabled = enabled;
        return {};
    }
    SystemLoginItem &m_system;
};

class AppPreferences : public ::testing::Test {
protected:
    void load()
    {
        preferences = std::make_unique<VeranoxAppPreferences>(
            std::make_unique<MemoryDefaults>(values), std::make_unique<FakeLoginItem>(loginItem));
    }

    QHash<QString, QVariant> values;
    SystemLoginItem loginItem;
    std::unique_ptr<VeranoxAppPreferences> preferences;
};

} // namespace

TEST_F(AppPreferences, freshDefaultsHoldThePresetAndTheTwoSwitches)
{
    load();
    EXPECT_TRUE(preferences->startServiceOnLaunch());
    EXPECT_TRUE(preferences->autoConfigurePAC());
    EXPECT_EQ(preferences->settingsShortcutID(), u"option-command-comma"_s);
    EXPECT_EQ(preferences->settingsShortcut(), VeranoxGlobalShortcut::presets().at(0));
    EXPECT_EQ(preferences->settingsShortcutTitle(), u"⌥⌘,"_s);
    EXPECT_FALSE(preferences->launchAtLogin());
    EXPECT_TRUE(preferences->lastError().isEmpty());
    EXPECT_TRUE(values.isEmpty());
}

TEST_F(AppPreferences, aValueOfTheWrongTypeCountsAsAbsent)
{
    values = {{u"veranox.startServiceOnLaunch"_s, u"false"_s}, {u"veranox.autoConfigurePAC"_s, qint64(0)},
        {u"veranox.settingsShortcut"_s, false}, {u"veranox.customSettingsShortcutKeyCode"_s, qint64(-1)},
        {u"veranox.customSettingsShortcutModifiers"_s, qint64(1) << 40}};
    load();
    EXPECT_TRUE(preferences->startServiceOnLaunch());
    EXPECT_TRUE(preferences->autoConfigurePAC());
    EXPECT_EQ(preferences->settingsShortcutID(), u"option-command-comma"_s);
    EXPECT_EQ(preferences->customSettingsShortcutKeyCode(), 0U);
    EXPECT_EQ(preferences->customSettingsShortcutModifiers(), 0U);
}

TEST_F(AppPreferences, eachChangeIsKeptAtOnceAndToldOnce)
{
    load();
    QSignalSpy told(preferences.get(), &VeranoxAppPreferences::startServiceOnLaunchChanged);
    preferences->setStartServiceOnLaunch(false);
    preferences->setStartServiceOnLaunch(false);
    preferences->setAutoConfigurePAC(false);
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(values.value(u"veranox.startServiceOnLaunch"_s), QVariant(false));
    EXPECT_EQ(values.value(u"veranox.autoConfigurePAC"_s), QVariant(false));
    load();
    EXPECT_FALSE(preferences->startServiceOnLaunch());
    EXPECT_FALSE(preferences->autoConfigurePAC());
}

TEST_F(AppPreferences, areKeptUnderTheirKeys)
{
    const QHash<QString, QVariant> expected{{u"veranox.startServiceOnLaunch"_s, false},
        {u"veranox.autoConfigurePAC"_s, false}, {u"veranox.settingsShortcut"_s, u"custom"_s},
        {u"veranox.customSettingsShortcutTitle"_s, u"⌃⌥⌘←"_s},
        {u"veranox.customSettingsShortcutKeyCode"_s, qint64(123)},
        {u"veranox.customSettingsShortcutModifiers"_s, qint64(6400)}};
    load();
    preferences->setStartServiceOnLaunch(false);
    preferences->setAutoConfigurePAC(false);
    preferences->setCustomSettingsShortcut(u"⌃⌥⌘←"_s, 123, 6400);
    preferences->setSettingsShortcutID(u"custom"_s);
    EXPECT_EQ(values, expected);
}

TEST_F(AppPreferences, areReadFromTheirKeys)
{
    values = {{u"veranox.startServiceOnLaunch"_s, false}, {u"veranox.customSettingsShortcutTitle"_s, u"⇧F1"_s},
        {u"veranox.customSettingsShortcutKeyCode"_s, qint64(0xFFFFFFFF)},
        {u"veranox.customSettingsShortcutModifiers"_s, qint64(512)}, {u"veranox.settingsShortcut"_s, u"custom"_s}};
    load();
    EXPECT_FALSE(preferences->startServiceOnLaunch());
    EXPECT_TRUE(preferences->autoConfigurePAC());
    EXPECT_EQ(preferences->settingsShortcutID(), u"custom"_s);
    EXPECT_EQ(preferences->customSettingsShortcutTitle(), u"⇧F1"_s);
    EXPECT_EQ(preferences->customSettingsShortcutKeyCode(), 0xFFFFFFFFU);
    EXPECT_EQ(preferences->customSettingsShortcutModifiers(), 512U);
    values = {{u"veranox.autoConfigurePAC"_s, false}};
    load();
    EXPECT_TRUE(preferences->startServiceOnLaunch());
    EXPECT_FALSE(preferences->autoConfigurePAC());
}

TEST_F(AppPreferences, tellOfEachChange)
{
    load();
    QSignalSpy start(preferences.get(), &VeranoxAppPreferences::startServiceOnLaunchChanged);
    QSignalSpy pac(preferences.get(), &VeranoxAppPreferences::autoConfigurePACChanged);
    QSignalSpy shortcut(preferences.get(), &VeranoxAppPreferences::settingsShortcutIDChanged);
    QSignalSpy login(preferences.get(), &VeranoxAppPreferences::launchAtLoginChanged);
    QSignalSpy error(preferences.get(), &VeranoxAppPreferences::lastErrorChanged);
    const auto told = [&] {
        return QList<qsizetype>{start.count(), pac.count(), shortcut.count(), login.count(), error.count()};
    };
    preferences->setStartServiceOnLaunch(true); // as it is
    preferences->setAutoConfigurePAC(true);
    preferences->setLaunchAtLogin(false);
    EXPECT_EQ(told(), (QList<qsizetype>{0, 0, 0, 0, 0}));
    preferences->setStartServiceOnLaunch(false);
    EXPECT_EQ(told(), (QList<qsizetype>{1, 0, 0, 0, 0}));
    preferences->setAutoConfigurePAC(false);
    preferences->setAutoConfigurePAC(false);
    EXPECT_EQ(told(), (QList<qsizetype>{1, 1, 0, 0, 0}));
    preferences->setCustomSettingsShortcut(u"⌥A"_s, 12, 2048); // takes effect with the id
    EXPECT_EQ(told(), (QList<qsizetype>{1, 1, 0, 0, 0}));
    preferences->setSettingsShortcutID(u"custom"_s);
    preferences->setSettingsShortcutID(u"custom"_s); // perhaps another combination
    EXPECT_EQ(told(), (QList<qsizetype>{1, 1, 2, 0, 0}));
    preferences->setLaunchAtLogin(true);
    EXPECT_EQ(told(), (QList<qsizetype>{1, 1, 2, 1, 0}));
    loginItem.refusal = u"Not allowed here."_s;
    preferences->setLaunchAtLogin(false);
    EXPECT_EQ(told(), (QList<qsizetype>{1, 1, 2, 1, 1}));
    loginItem.enabled = false; // by the person, in the system's settings
    preferences->mirrorLaunchAtLogin();
    EXPECT_EQ(told(), (QList<qsizetype>{1, 1, 2, 2, 1}));
    EXPECT_FALSE(preferences->launchAtLogin());
}

TEST(GlobalShortcut, presetsAreATable)
{
    const QList<VeranoxGlobalShortcut> expected{{u"option-command-comma"_s, u"⌥⌘,"_s, 43, 2304},
        {u"option-command-t"_s, u"⌥⌘T"_s, 17, 2304}, {u"control-option-command-t"_s, u"⌃⌥⌘T"_s, 17, 6400}};
    EXPECT_EQ(VeranoxGlobalShortcut::presets(), expected);
    EXPECT_FALSE(VeranoxGlobalShortcut::shortcut(u"gone"_s));
}

TEST_F(AppPreferences, shortcutWordsFollowTheIdentifier)
{
    load();
    struct Row {
        QString id;
        bool exists;
        QString title;
    };
    const QList<Row> rows{{u"off"_s, false, u"Off"_s}, {u"gone"_s, false, u"Set Shortcut"_s},
        {u"custom"_s, false, u"Set Shortcut"_s}, {u"option-command-t"_s, true, u"⌥⌘T"_s}};
    for (const Row &row : rows) {
        preferences->setSettingsShortcutID(row.id);
        EXPECT_EQ(preferences->settingsShortcut().has_value(), row.exists) << qPrintable(row.id);
        EXPECT_EQ(preferences->settingsShortcutTitle(), row.title) << qPrintable(row.id);
    }
}

TEST_F(AppPreferences, aRecordedShortcutNeedsAKeyAndModifiers)
{
    load();
    preferences->setSettingsShortcutID(u"custom"_s);
    preferences->setCustomSettingsShortcut(u"⌥A"_s, 0, 2048); // the key with code 0
    EXPECT_FALSE(preferences->settingsShortcut());
    preferences->setCustomSettingsShortcut(u"A"_s, 12, 0);
    EXPECT_FALSE(preferences->settingsShortcut());
    preferences->setCustomSettingsShortcut(u"⌃⌥⌘←"_s, 123, 6400);
    EXPECT_EQ(preferences->settingsShortcut(), (VeranoxGlobalShortcut{u"custom"_s, u"⌃⌥⌘←"_s, 123, 6400}));
    EXPECT_EQ(preferences->settingsShortcutTitle(), u"⌃⌥⌘←"_s);
    load();
    EXPECT_EQ(preferences->settingsShortcutTitle(), u"⌃⌥⌘←"_s);
}

TEST_F(AppPreferences, launchAtLoginShowsWhatTheSystemReallyDid)
{
    load();
    preferences->setLaunchAtLogin(true);
    EXPECT_TRUE(preferences->launchAtLogin());
    preferences->setLaunchAtLogin(true); // nothing to ask for
    EXPECT_EQ(loginItem.asked, 1);
    loginItem.refusal = u"Not allowed here."_s;
    preferences->setLaunchAtLogin(false);
    EXPECT_TRUE(preferences->launchAtLogin());
    EXPECT_EQ(preferences->lastError(), u"Not allowed here."_s);
    loginItem.refusal.clear();
    preferences->setLaunchAtLogin(false);
    EXPECT_FALSE(preferences->launchAtLogin());
    EXPECT_TRUE(preferences->lastError().isEmpty());
}
