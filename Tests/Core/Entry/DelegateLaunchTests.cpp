#include "Tests/Core/Entry/DelegateWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::Not;

namespace {

const QStringList launchSteps{u"agent"_s, u"login item"_s, u"shortcut: option-command-comma"_s,
    u"activity: Veranox is a persistent menu bar application"_s, u"status item"_s};

const QString requested = u"[APP] automatic local service startup requested"_s;
const QString disabled = u"[APP] automatic local service startup is disabled in Settings"_s;

class DelegateLaunch : public DelegateWorld { };

} // namespace

TEST_F(DelegateLaunch, doesNothingBeforeItIsTold)
{
    make();
    world.run(1h);
    EXPECT_EQ(steps, QStringList());
    EXPECT_EQ(logFile->loading.calls, 0);
    EXPECT_EQ(service->health.calls, 0);
}

TEST_F(DelegateLaunch, goesStepByStep)
{
    make();
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(newSteps(), launchSteps);
    EXPECT_EQ(logFile->loading.calls, 0); // the store begins in a later turn, with all of this in place
    world.run();
    EXPECT_EQ(newSteps(), QStringList());
    EXPECT_TRUE(store->serviceState().isOnline());
}

TEST_F(DelegateLaunch, startsTheStoreOnceItsLogIsRead)
{
    logFile->loading.hold();
    launch();
    EXPECT_EQ(logFile->loading.calls, 1);
    EXPECT_EQ(service->health.calls, 0);
    EXPECT_THAT(log(), Not(Contains(requested)));
    logFile->loading.release();
    world.run();
    EXPECT_EQ(service->health.calls, 1);
    ASSERT_GE(log().size(), 2);
    EXPECT_TRUE(log().at(0).startsWith(u"[APP] session started: "_s)) << qPrintable(log().at(0));
    EXPECT_EQ(log().at(1), requested);
    EXPECT_THAT(log(), Not(Contains(disabled)));
    world.run(15s);
    EXPECT_EQ(service->profiles.calls, 2); // and reads it on schedule
}

TEST_F(DelegateLaunch, asksTheSystemWhetherItLaunchesAtLogin)
{
    launchAtLogin = true; // switched on elsewhere since the preferences were read
    EXPECT_FALSE(preferences->launchAtLogin());
    launch();
    EXPECT_TRUE(preferences->launchAtLogin());
}

TEST_F(DelegateLaunch, tellsOfPreferencesThatCouldNotBeRead)
{
    defaults->trouble = u"The file was set aside."_s;
    launch();
    ASSERT_GE(log().size(), 3);
    EXPECT_EQ(log().at(1), u"[APP] The file was set aside."_s);
    EXPECT_EQ(log().at(2), requested);
}

TEST_F(DelegateLaunch, startsAndReadsNothingWhenThePreferencesSayNo)
{
    preferences->setStartServiceOnLaunch(false);
    launch();
    EXPECT_EQ(steps, launchSteps);
    world.run(1h);
    ASSERT_EQ(log().size(), 2);
    EXPECT_TRUE(log().at(0).startsWith(u"[APP] session started: "_s)) << qPrintable(log().at(0));
    EXPECT_EQ(log().at(1), disabled);
    const VeranoxRuntimeLogEntry &line = store->runtimeLog().last();
    EXPECT_EQ(line.eventCode, std::nullopt);
    EXPECT_EQ(line.level, std::nullopt);
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(service->health.calls, 0);
    EXPECT_EQ(service->profiles.calls, 0);
    EXPECT_EQ(service->config.calls, 0);
    EXPECT_EQ(runtime->calls, QStringList());
}

TEST_F(DelegateLaunch, startsWhenAPersonAsksAlthoughThePreferencesSayNo)
{
    preferences->setStartServiceOnLaunch(false);
    launch();
    store->startRouter();
    world.run();
    EXPECT_TRUE(store->serviceState().isOnline());
}

TEST_F(DelegateLaunch, thePreferenceIsReadOnceTheLogIs)
{
    logFile->loading.hold();
    launch();
    preferences->setStartServiceOnLaunch(false);
    logFile->loading.release();
    world.run();
    EXPECT_EQ(service->health.calls, 0);
    EXPECT_THAT(log(), Contains(disabled));
}

TEST_F(DelegateLaunch, stopsBehindTheShortcutWithinATestBundle)
{
    const EnvironmentVariable bundle("XCTestConfigurationFilePath", ""); // its presence counts, not its value
    launch();
    EXPECT_EQ(newSteps(), launchSteps.first(3));
    world.run(1h);
    EXPECT_EQ(log(), QStringList());
    EXPECT_EQ(logFile->loading.calls, 0);
    EXPECT_EQ(service->health.calls, 0);
    EXPECT_EQ(runtime->calls, QStringList());
    Q_EMIT hotKey->triggered();
    delegate->applicationShouldHandleReopen();
    EXPECT_FALSE(shows(u"popoverWindow"_s));
    preferences->setSettingsShortcutID(u"off"_s);
    EXPECT_EQ(newSteps(), QStringList{u"shortcut: none"_s});
}

TEST_F(DelegateLaunch, followsThePreferencesWithTheShortcut)
{
    launch();
    newSteps();
    preferences->setSettingsShortcutID(VeranoxGlobalShortcut::presets().at(1).id);
    EXPECT_EQ(newSteps(), QStringList{u"shortcut: "_s + VeranoxGlobalShortcut::presets().at(1).id});
    preferences->setSettingsShortcutID(u"off"_s);
    EXPECT_EQ(newSteps(), QStringList{u"shortcut: none"_s});
}

TEST_F(DelegateLaunch, theShortcutBringsItToTheFront)
{
    launch();
    EXPECT_FALSE(shows(u"popoverWindow"_s));
    Q_EMIT hotKey->triggered();
    EXPECT_TRUE(shows(u"popoverWindow"_s));
}

TEST_F(DelegateLaunch, aSecondLaunchBringsItToTheFront)
{
    launch();
    delegate->applicationShouldHandleReopen();
    EXPECT_TRUE(shows(u"popoverWindow"_s));
}
