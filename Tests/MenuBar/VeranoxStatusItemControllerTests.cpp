#include "Controls/QmlEngine.h"
#include "MenuBar/VeranoxStatusItemController.h"
#include "Platform/StatusItem.h"
#include "Platform/SystemTheme.h"
#include "Tests/Support/StoreWorld.h"
#include <QApplication>
#include <QMenu>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class FakeStatusItem final : public StatusItem {
public:
    void setIcon(const QIcon &) override { ++icons; }
    void setToolTip(const QString &text) override { toolTips.append(text); }
    void setAccessibleName(const QString &name) override { accessibleName = name; }
    void setMenu(QMenu *shown) override { menu = shown; }
    bool isAvailable() const override { return available; }
    bool showsOnlyMenu() const override { return onlyMenu; }
    QRect geometry() const override { return place; }
    bool isBeingPlaced() const override { return beingPlaced; }

    QRect place{400, 0, 22, 22};
    bool beingPlaced = false;
    bool onlyMenu = false;
    int icons = 0;
    QStringList toolTips;
    QString accessibleName;
    QMenu *menu = nullptr;
    bool available = true;
};

class FakeTheme final : public SystemTheme {
public:
    bool isDark() const override { return dark; }
    bool isPanelDark() const override { return dark; }
    bool colorsTemplateImages() const override { return false; }
    bool dark = false;
};

class StatusItemController : public StoreWorld {
protected:
    void putUp()
    {
        auto made = std::make_unique<FakeStatusItem>();
        made->available = trayIsThere;
        made->onlyMenu = onlyMenu;
        item = made.get();
        controller = std::make_unique<VeranoxStatusItemController>(
            world.queue, *store, std::move(made), theme, engine, [this] { ++quitRequests; });
    }

    QStringList menuTexts() const
    {
        QStringList texts;
        for (const QAction *action : item->menu->actions())
            texts.append(action->text());
        return texts;
    }

    static const QWindow *popoverWindow()
    {
        const auto windows = QGuiApplication::allWindows();
        const auto found = std::ranges::find(windows, u"popoverWindow"_s, &QWindow::objectName);
        return found == windows.end() ? nullptr : *found;
    }

    FakeTheme theme;
    QmlEngine engine{theme};
    std::unique_ptr<VeranoxStatusItemController> controller;
    FakeStatusItem *item = nullptr; // the controller's
    bool trayIsThere = true;
    bool onlyMenu = false;
    int quitRequests = 0;
};

} // namespace

TEST_F(StatusItemController, saysTheStateInWordsAndForAScreenReader)
{
    putUp();
    EXPECT_EQ(item->toolTips, QStringList({u"Veranox — Offline"_s}));
    refresh();
    EXPECT_EQ(item->toolTips.last(), u"Veranox — Online"_s);
    EXPECT_EQ(item->accessibleName, u"Veranox — Online"_s);
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(item->toolTips.last(), u"Veranox — Error"_s);
    EXPECT_EQ(item->accessibleName, u"Veranox — Error"_s);
}

TEST_F(StatusItemController, drawsOnceForManyChangesAndNotAtAllForNone)
{
    putUp();
    EXPECT_EQ(item->icons, 1);
    refresh(); // a dozen changes
    EXPECT_EQ(item->icons, 2);
    EXPECT_EQ(item->toolTips.size(), 2);
    refresh();
    world.run(1h);
    EXPECT_EQ(item->icons, 2);
    EXPECT_EQ(item->toolTips.size(), 2);
}

TEST_F(StatusItemController, followsThePulse)
{
    putUp();
    service->profiles.answer({profile(u"home"_s, false, u"Starting"_s)});
    refresh();
    const int before = item->icons;
    world.run(1080ms); // one breath
    EXPECT_EQ(item->icons - before, 6);
}

TEST_F(StatusItemController, drawsAgainWhenTheThemeChanges)
{
    putUp();
    refresh();
    const int before = item->icons;
    theme.dark = true;
    Q_EMIT theme.changed();
    EXPECT_EQ(item->icons, before); // in a later turn
    world.run();
    EXPECT_EQ(item->icons, before + 1);
}

TEST_F(StatusItemController, aPrimaryClickOpensThePopoverAndReadsTheState)
{
    putUp();
    EXPECT_FALSE(engine.isMade()); // nobody has looked yet
    Q_EMIT item->primaryActivated({});
    EXPECT_TRUE(controller->popoverIsShown());
    world.run();
    EXPECT_EQ(service->profiles.calls, 1);
    EXPECT_EQ(quitRequests, 0);
}

TEST_F(StatusItemController, aPopoverThatIsAskedForTooEarlyWaitsForTheItemsPlace)
{
    putUp();
    item->beingPlaced = true;
    item->place = {};
    controller->showPopover({});
    world.run(300ms);
    EXPECT_FALSE(controller->popoverIsShown());
    EXPECT_EQ(service->profiles.calls, 1); // it looks what is new all the same
    item->beingPlaced = false;
    item->place = {600, 400, 22, 22};
    world.run(50ms);
    EXPECT_TRUE(controller->popoverIsShown());
    const QRect popover = popoverWindow()->geometry();
    EXPECT_TRUE(popover.left() < 600 && 600 < popover.right()) << popover.left() << " to " << popover.right();
}

TEST_F(StatusItemController, aPopoverWaitsForTheItemsPlaceNoLongerThanASecond)
{
    putUp();
    item->beingPlaced = true;
    controller->showPopover({});
    controller->showPopover({});
    world.run(950ms);
    EXPECT_FALSE(controller->popoverIsShown());
    world.run(50ms);
    EXPECT_TRUE(controller->popoverIsShown());
}

TEST_F(StatusItemController, aClickOpensThePopoverThatWaitsAtOnceAndOnce)
{
    putUp();
    item->beingPlaced = true;
    controller->showPopover({});
    Q_EMIT item->primaryActivated({410, 10});
    EXPECT_TRUE(controller->popoverIsShown());
    Q_EMIT item->primaryActivated({410, 10});
    world.run(2s);
    EXPECT_FALSE(controller->popoverIsShown());
}

TEST_F(StatusItemController, aPopoverThatWaitsGivesWayToTheMenuAndToQuitting)
{
    putUp();
    item->beingPlaced = true;
    controller->showPopover({});
    controller->showContextMenu({});
    item->menu->close();
    world.run(2s);
    EXPECT_FALSE(controller->popoverIsShown());
    controller->showPopover({});
    item->menu->actions().constLast()->trigger();
    world.run(2s);
    EXPECT_FALSE(controller->popoverIsShown());
}

TEST_F(StatusItemController, aSecondClickClosesThePopoverAndReadsNothing)
{
    putUp();
    Q_EMIT item->primaryActivated({});
    world.run();
    Q_EMIT item->primaryActivated({});
    EXPECT_FALSE(controller->popoverIsShown());
    world.run();
    EXPECT_EQ(service->profiles.calls, 1);
}

TEST_F(StatusItemController, onlyWhereAPanelShowsNothingElseTheMenuOpensThePopover)
{
    onlyMenu = true;
    putUp();
    ASSERT_EQ(menuTexts(), QStringList({u"Show Veranox"_s, u""_s, u"Quit Veranox…"_s}));
    item->menu->actions().constFirst()->trigger();
    EXPECT_TRUE(controller->popoverIsShown());
}

TEST_F(StatusItemController, quittingFromTheMenuClosesThePopoverFirst)
{
    putUp();
    Q_EMIT item->primaryActivated({});
    item->menu->actions().constLast()->trigger();
    EXPECT_FALSE(controller->popoverIsShown());
    EXPECT_EQ(quitRequests, 1);
}

TEST_F(StatusItemController, theMenuQuits)
{
    putUp();
    ASSERT_EQ(menuTexts(), QStringList({u"Quit Veranox…"_s}));
    item->menu->actions().constFirst()->trigger();
    EXPECT_EQ(quitRequests, 1);
}

TEST_F(StatusItemController, popsTheMenuUpWhereItIsAskedForOrBelowTheItem)
{
    putUp();
    Q_EMIT item->menuRequested({200, 150});
    EXPECT_TRUE(item->menu->isVisible());
    EXPECT_EQ(item->menu->pos(), QPoint(200, 150));
    item->menu->close();
    EXPECT_EQ(service->profiles.calls, 0); // told apart from a primary click
    controller->showContextMenu({});
    EXPECT_TRUE(item->menu->isVisible());
    item->menu->close();
}

TEST_F(StatusItemController, saysOnceThatThereIsNoTray)
{
    trayIsThere = false;
    putUp();
    world.run(1h);
    EXPECT_EQ(log(), QStringList({u"[APP] this desktop shows no tray; the icon appears as soon as there is one"_s}));
}

TEST_F(StatusItemController, saysNothingWhenTheTrayComesDuringTheStart)
{
    trayIsThere = false;
    putUp();
    world.run(2s);
    item->available = true;
    world.run(1h);
    EXPECT_TRUE(log().isEmpty());
}

TEST_F(StatusItemController, isGoneWithoutATraceWhenTakenDown)
{
    trayIsThere = false;
    putUp();
    Q_EMIT item->primaryActivated({});
    const QPointer<StatusItem> shown = item;
    const QPointer<QMenu> menu = item->menu;
    ASSERT_FALSE(QGuiApplication::topLevelWindows().isEmpty());
    controller.reset();
    EXPECT_TRUE(shown.isNull());
    EXPECT_TRUE(menu.isNull());
    EXPECT_TRUE(QGuiApplication::topLevelWindows().isEmpty());
    Q_EMIT theme.changed();
    refresh();
    world.run(1h);
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_TRUE(log().isEmpty()); // nobody is left who would miss the tray
}
