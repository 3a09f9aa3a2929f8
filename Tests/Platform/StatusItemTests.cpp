#include "Tests/Platform/StatusItemOnADesktop.h"
#include "Tests/Support/SlowXEmbedTray.h"
#include "Tests/Support/StatusNotifierHostProcess.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST_F(StatusItemOnADesktop, ShowsItselfOnAHostThatIsThere)
{
    item.reset();
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.stands());
    SetUp();
    EXPECT_FALSE(item->isAvailable());
    EXPECT_TRUE(host.comesToShowOneItem());
    EXPECT_TRUE(comesToBe(true));
    EXPECT_THAT(availability, ElementsAre(true));
    EXPECT_TRUE(item->geometry().isEmpty());
}

TEST_F(StatusItemOnADesktop, ShowsItselfOnAHostThatComesLater)
{
    settle();
    EXPECT_FALSE(item->isAvailable());
    StatusNotifierHostProcess host;
    EXPECT_TRUE(host.comesToShowOneItem());
    EXPECT_TRUE(comesToBe(true));
}

TEST_F(StatusItemOnADesktop, ComesBackWhenTheHostIsStartedAgain)
{
    for (int round = 0; round < 3; ++round) {
        StatusNotifierHostProcess host;
        EXPECT_TRUE(host.comesToShowOneItem());
        EXPECT_TRUE(comesToBe(true));
        host.stop();
        EXPECT_TRUE(comesToBe(false));
    }
    EXPECT_THAT(availability, ElementsAre(true, false, true, false, true, false));
}

TEST_F(StatusItemOnADesktop, WaitsForAHostBehindAWatcher)
{
    StatusNotifierHostProcess watcher({u"--no-host"_s});
    EXPECT_TRUE(watcher.comesToShowOneItem());
    EXPECT_FALSE(item->isAvailable());
    watcher.ask(u"host on"_s);
    EXPECT_TRUE(comesToBe(true));
    watcher.ask(u"host off"_s);
    EXPECT_TRUE(comesToBe(false));
}

TEST_F(StatusItemOnADesktop, GoesIntoATrayThatEmbeds)
{
    XEmbedTray tray;
    ASSERT_TRUE(comesToBe(true));
    EXPECT_TRUE(comesToBeSeenIn(tray));
    tray.stop();
    EXPECT_TRUE(comesToBe(false));
    EXPECT_TRUE(item->geometry().isEmpty());
    XEmbedTray another;
    EXPECT_TRUE(comesToBe(true));
    EXPECT_TRUE(comesToBeSeenIn(another));
}

TEST_F(StatusItemOnADesktop, HasNoPlaceUntilATrayHasTakenItIn)
{
    {
        const SlowXEmbedTray tray;
        ASSERT_TRUE(comesToBe(true));
        EXPECT_TRUE(item->geometry().isEmpty());
        EXPECT_TRUE(item->isBeingPlaced());
    }
    EXPECT_TRUE(comesToBe(false));
    EXPECT_FALSE(item->isBeingPlaced());
    XEmbedTray tray;
    EXPECT_TRUE(comesToBeSeenIn(tray));
    EXPECT_FALSE(item->isBeingPlaced());
}

TEST_F(StatusItemOnADesktop, PrefersATrayToAWatcherWithoutAHost)
{
    StatusNotifierHostProcess watcher({u"--no-host"_s});
    ASSERT_TRUE(watcher.comesToShowOneItem());
    XEmbedTray tray;
    EXPECT_TRUE(comesToBeSeenIn(tray));
}

TEST_F(StatusItemOnADesktop, MovesToAHostThatComesAndBackWhenItGoes)
{
    XEmbedTray tray;
    ASSERT_TRUE(comesToBeSeenIn(tray));
    {
        StatusNotifierHostProcess host;
        EXPECT_TRUE(host.comesToShowOneItem());
        EXPECT_TRUE(eventually([this] { return item->geometry().isEmpty(); }));
        EXPECT_TRUE(item->isAvailable());
        EXPECT_TRUE(host.comesToShowOneItem()) << "and stays the only one";
    }
    EXPECT_TRUE(comesToBeSeenIn(tray));
}

TEST_F(StatusItemOnADesktop, WaitsQuietlyWithoutAny)
{
    settle();
    EXPECT_FALSE(item->isAvailable());
    EXPECT_TRUE(item->geometry().isEmpty());
    EXPECT_TRUE(availability.isEmpty());
}

TEST_F(StatusItemOnADesktop, LeavesWithItsDestruction)
{
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    item.reset();
    EXPECT_TRUE(host.ask(u"property Id"_s).startsWith(u"ERROR"_s));
}
