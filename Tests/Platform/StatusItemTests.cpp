#include "Platform/Linux/TrayStatusItem.h"
#include "Tests/Support/SlowXEmbedTray.h"
#include "Tests/Support/StatusNotifierHostProcess.h"
#include "Tests/Support/XEmbedTray.h"
#include <QGuiApplication>
#include <QMenu>
#include <QPixmap>
#include <QScreen>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

namespace {

const QColor itemColor(0x4E, 0xC9, 0x8F);

QIcon filled(const QColor &color)
{
    QPixmap picture(44, 44);
    picture.fill(color);
    return QIcon(picture);
}

void xdotool(const QString &arguments)
{
    ASSERT_EQ(QProcess::execute(u"xdotool"_s, arguments.split(u' ')), 0) << qUtf8Printable(arguments);
}

class StatusItemOnADesktop : public ::testing::Test {
protected:
    void SetUp() override
    {
        item = std::make_unique<TrayStatusItem>(QDBusConnection::sessionBus());
        QObject::connect(item.get(), &StatusItem::availableChanged, item.get(),
            [this](bool available) { availability << available; });
        QObject::connect(
            item.get(), &StatusItem::primaryActivated, item.get(), [this](QPoint where) { primaryClicks << where; });
        QObject::connect(
            item.get(), &StatusItem::menuRequested, item.get(), [this](QPoint where) { menuRequests << where; });
        item->setIcon(filled(itemColor));
        item->setToolTip(u"Veranox — Online"_s);
        item->setAccessibleName(u"Veranox — Online"_s);
    }

    bool comesToBe(bool available)
    {
        return eventually([&] { return item->isAvailable() == available; });
    }

    // Whether the item's colour is on the screen where the item says that it is.
    bool isSeen() const
    {
        const QRect place = item->geometry();
        if (place.isEmpty())
            return false;
        const QImage shot = QGuiApplication::primaryScreen()
                                ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                                .toImage();
        return shot.pixelColor(shot.rect().center()) == itemColor;
    }

    // Whether the tray comes to show the item. trayer now and then never lays out an icon that asks for a place during
    // its start, and leaves it outside the screen: that trayer is started again.
    bool comesToBeSeenIn(XEmbedTray &tray)
    {
        for (int attempt = 0; attempt < 5; ++attempt) {
            if (eventually([this] { return isSeen(); }, std::chrono::seconds(5)))
                return true;
            if (!item->isBeingPlaced())
                return false;
            tray.restart();
        }
        return false;
    }

    // Clicks on the item until that has an effect. Again only if the tray has moved the item in the meantime.
    bool click(const QString &how, std::predicate auto hasEffect)
    {
        for (int attempt = 0; attempt < 10; ++attempt) {
            const QPoint center = item->geometry().center();
            xdotool(u"mousemove %1 %2 %3"_s.arg(center.x()).arg(center.y()).arg(how));
            if (eventually(hasEffect, std::chrono::seconds(5)))
                return true;
            if (item->geometry().center() == center)
                return false;
        }
        return false;
    }

    // Lets everything happen that is under way on the bus and on the display.
    void settle() const
    {
        for (int turn = 0; turn < 5; ++turn) {
            QProcess::execute(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s});
            QCoreApplication::processEvents();
        }
    }

    QMenu menu; // outlives the item
    QList<bool> availability;
    QList<QPoint> primaryClicks;
    QList<QPoint> menuRequests;
    std::unique_ptr<TrayStatusItem> item;
};

} // namespace

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

TEST_F(StatusItemOnADesktop, TheHostReadsWhatItShows)
{
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    EXPECT_EQ(host.ask(u"property Id"_s), u"PROPERTY veranox-menu"_s);
    EXPECT_EQ(host.ask(u"property Title"_s), u"PROPERTY Veranox"_s);
    EXPECT_EQ(host.ask(u"property Category"_s), u"PROPERTY ApplicationStatus"_s);
    EXPECT_EQ(host.ask(u"property Status"_s), u"PROPERTY Active"_s);
    EXPECT_EQ(host.ask(u"property ItemIsMenu"_s), u"PROPERTY false"_s);
    EXPECT_EQ(host.ask(u"property Menu"_s), u"PROPERTY /NO_DBUSMENU"_s);
    EXPECT_EQ(host.ask(u"property IconAccessibleDesc"_s), u"PROPERTY Veranox — Online"_s);
    EXPECT_EQ(host.ask(u"tooltip"_s), u"TOOLTIP Veranox — Online"_s);
    EXPECT_TRUE(host.ask(u"icon"_s).startsWith(u"ICON 22x22:"_s));
}

TEST_F(StatusItemOnADesktop, TheHostIsToldOfAChangeAndOfNothingElse)
{
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    const QString before = host.ask(u"icon"_s);
    const QIcon red = filled(Qt::red);
    for (int repeat = 0; repeat < 3; ++repeat) {
        item->setIcon(red);
        item->setToolTip(u"Veranox — Offline"_s);
    }
    EXPECT_TRUE(host.comesToSay(u"tooltip"_s, u"TOOLTIP Veranox — Offline"_s));
    EXPECT_NE(host.ask(u"icon"_s), before);
    EXPECT_EQ(host.ask(u"counts"_s), u"COUNTS NewIcon=1 NewToolTip=1 LayoutUpdated=0 ItemsPropertiesUpdated=0"_s);
}

TEST_F(StatusItemOnADesktop, ClicksOnAHostCarryTheirPlace)
{
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    host.ask(u"click 640 20"_s);
    host.ask(u"context 641 21"_s);
    EXPECT_TRUE(eventually([this] { return primaryClicks.size() + menuRequests.size() == 2; }));
    EXPECT_THAT(primaryClicks, ElementsAre(QPoint(640, 20)));
    EXPECT_THAT(menuRequests, ElementsAre(QPoint(641, 21)));
}

TEST_F(StatusItemOnADesktop, AControlClickOnAHostAsksForTheMenu)
{
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    xdotool(u"keydown ctrl"_s);
    host.ask(u"click 640 20"_s);
    xdotool(u"keyup ctrl"_s);
    host.ask(u"click 10 10"_s);
    EXPECT_TRUE(eventually([this] { return primaryClicks.size() + menuRequests.size() == 2; }));
    EXPECT_THAT(menuRequests, ElementsAre(QPoint(640, 20)));
    EXPECT_THAT(primaryClicks, ElementsAre(QPoint(10, 10)));
}

TEST_F(StatusItemOnADesktop, TheHostDrawsTheMenuAndChoosesFromIt)
{
    QStringList chosen;
    QAction *const open = menu.addAction(u"Open Options… (⌃_)"_s);
    QObject::connect(open, &QAction::triggered, &menu, [&] { chosen << u"open"_s; });
    menu.addSeparator();
    QMenu *const more = menu.addMenu(u"&More"_s);
    QObject::connect(more->addAction(u"Inner"_s), &QAction::triggered, &menu, [&] { chosen << u"inner"_s; });
    item->setMenu(&menu);
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    EXPECT_EQ(host.ask(u"property Menu"_s), u"PROPERTY /MenuBar"_s);
    EXPECT_EQ(host.ask(u"menu"_s), u"MENU 1=Open Options… (⌃__)|2=--|3=_More[4=Inner]"_s);

    host.ask(u"choose 1"_s);
    host.ask(u"choose 4"_s);
    EXPECT_TRUE(eventually([&] { return chosen.size() == 2; }));
    EXPECT_THAT(chosen, ElementsAre(u"open"_s, u"inner"_s));
    EXPECT_TRUE(host.ask(u"choose 77"_s).startsWith(u"ERROR"_s));
    EXPECT_EQ(host.ask(u"show"_s), u"SHOWN false"_s);

    open->setText(u"Open Options…"_s);
    open->setEnabled(false);
    EXPECT_TRUE(host.comesToSay(u"menu"_s, u"MENU 1=(Open Options…)|2=--|3=_More[4=Inner]"_s));
    EXPECT_EQ(host.ask(u"counts"_s), u"COUNTS NewIcon=0 NewToolTip=0 LayoutUpdated=0 ItemsPropertiesUpdated=1"_s);
    menu.addAction(u"Quit Veranox…"_s);
    EXPECT_TRUE(
        host.comesToSay(u"counts"_s, u"COUNTS NewIcon=0 NewToolTip=0 LayoutUpdated=1 ItemsPropertiesUpdated=1"_s));
    EXPECT_EQ(host.ask(u"menu"_s), u"MENU 1=(Open Options…)|2=--|3=_More[4=Inner]|5=Quit Veranox…"_s);
}

TEST_F(StatusItemOnADesktop, ClicksInATrayAreToldApart)
{
    int shown = 0;
    menu.addAction(u"Open Options…"_s);
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&] { ++shown; });
    item->setMenu(&menu);
    XEmbedTray tray;
    ASSERT_TRUE(comesToBeSeenIn(tray));
    EXPECT_TRUE(click(u"click 1"_s, [this] { return primaryClicks.size() == 1; }));
    EXPECT_TRUE(item->geometry().contains(primaryClicks.value(0)));
    EXPECT_TRUE(menuRequests.isEmpty());

    EXPECT_TRUE(click(u"keydown ctrl click 1"_s, [this] { return menuRequests.size() == 1; }));
    xdotool(u"keyup ctrl"_s);
    EXPECT_TRUE(item->geometry().contains(menuRequests.value(0)));
    EXPECT_EQ(primaryClicks.size(), 1);
    EXPECT_EQ(shown, 0);

    EXPECT_TRUE(click(u"click 3"_s, [&] { return shown == 1; })) << "Qt pops the menu up itself";
    EXPECT_EQ(menuRequests.size(), 1);
    EXPECT_EQ(primaryClicks.size(), 1);
    menu.close();
}

TEST_F(StatusItemOnADesktop, LeavesWithItsDestruction)
{
    StatusNotifierHostProcess host;
    ASSERT_TRUE(host.comesToShowOneItem());
    item.reset();
    EXPECT_TRUE(host.ask(u"property Id"_s).startsWith(u"ERROR"_s));
}
