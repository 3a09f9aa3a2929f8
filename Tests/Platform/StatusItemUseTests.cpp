#include "Tests/Platform/StatusItemOnADesktop.h"
#include "Tests/Support/StatusNotifierHostProcess.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

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
