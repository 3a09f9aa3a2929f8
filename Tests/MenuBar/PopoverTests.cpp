#include "MenuBar/Popover/VeranoxMenuView.h"
#include "MenuBar/VeranoxMenuPopover.h"
#include "MenuBar/VeranoxQuitConfirmationPresenter.h"
#include "Tests/Support/NoScreens.h"
#include "Tests/Support/QmlStage.h"
#include "Tests/Support/StoreWorld.h"
#include <QScreen>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The texts that are shown below the item, in reading order.
QStringList textsIn(const QQuickItem &item)
{
    QStringList texts;
    for (const QQuickItem *child : item.childItems()) {
        if (!child->isVisible())
            continue;
        const bool isSymbol = child->property("name").isValid();
        const QString text = child->property("text").toString();
        if (!text.isEmpty() && !isSymbol)
            texts.append(text);
        texts += textsIn(*child);
    }
    return texts;
}

class Popover : public StoreWorld {
protected:
    Popover()
    {
        popover = std::make_unique<VeranoxMenuPopover>(world.queue, *store, engine,
            VeranoxMenuActions{.dismissMenu = {},
                .requestQuit = [this] { ++quitRequests; },
                .copyText = [this](const QString &text) { copied.append(text); },
                .openAddress = [](const QUrl &) {}});
    }

    void open(const QRect &icon = {400, 0, 22, 22})
    {
        popover->show(icon);
        ASSERT_TRUE(QTest::qWaitForWindowActive(popover->window()));
        QCoreApplication::processEvents();
    }

    QQuickItem *find(const QString &name) const
    {
        auto *item = itemNamed(popover->window()->contentItem(), name);
        EXPECT_NE(item, nullptr) << qUtf8Printable(name);
        return item;
    }

    QString focused() const { return popover->window()->activeFocusItem()->objectName(); }

    NoWarnings noWarnings;
    FixedTheme theme{false};
    QmlEngine engine{theme};
    std::unique_ptr<VeranoxMenuPopover> popover;
    QStringList copied;
    int quitRequests = 0;
};

} // namespace

TEST_F(Popover, standsOnTheScreenWithTheWidthOfItsContent)
{
    refresh();
    open();
    EXPECT_EQ(popover->window()->width(), 796);
    EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(popover->window()->geometry()));
}

TEST_F(Popover, growsWithItsContentAndThenScrolls)
{
    refresh();
    open();
    const int before = popover->window()->height();
    QList<VeranoxProfile> many;
    for (int number = 0; number < 2; ++number)
        many.append(profile(u"p%1"_s.arg(number), true, u"Running"_s));
    service->profiles.answer(many);
    refresh();
    EXPECT_TRUE(QTest::qWaitFor([&] { return popover->window()->height() == before + 44; }));
    for (int number = 2; number < 60; ++number)
        many.append(profile(u"p%1"_s.arg(number), true, u"Running"_s));
    service->profiles.answer(many);
    refresh();
    const int most = QGuiApplication::primaryScreen()->availableGeometry().height() - 24;
    EXPECT_TRUE(QTest::qWaitFor([&] { return popover->window()->height() == most; }));
    EXPECT_TRUE(find(u"viewport"_s)->property("interactive").toBool());
}

TEST_F(Popover, advisesWhoHasNoProfileYet)
{
    open();
    const auto *empty = find(u"emptyProfiles"_s);
    EXPECT_TRUE(empty->isVisible());
    EXPECT_FALSE(find(u"profiles"_s)->isVisible());
    const auto words = textsIn(*empty);
    EXPECT_EQ(words,
        (QStringList{u"Create your first profile"_s,
            u"Add a tailnet, choose its suffix, then Veranox will route matching hostnames through that "
            "profile."_s}));
    refresh();
    EXPECT_FALSE(empty->isVisible());
    EXPECT_TRUE(find(u"profiles"_s)->isVisible());
}

TEST_F(Popover, namesTheColumnsOfTunnelsAndPublications)
{
    service->tunnels.answer({tunnel(u"db"_s, u"listening"_s)});
    service->publications.answer({publication(u"docs"_s, u"listening"_s)});
    refresh();
    open();
    EXPECT_EQ(textsIn(*find(u"tunnelHeads"_s)), (QStringList{u"TUNNEL"_s, u"TARGET"_s, u"MODE"_s, u"ENDPOINT"_s}));
    EXPECT_EQ(textsIn(*find(u"publicationHeads"_s)), (QStringList{u"PUBLICATION"_s, u"SERVES"_s, u"ADDRESS"_s}));
}

TEST_F(Popover, offersNothingOfTheServiceWhileItStarts)
{
    refresh();
    service->profiles.fail(unavailable());
    refresh();
    open();
    EXPECT_TRUE(find(u"serviceError"_s)->isVisible());
    service->health.answer(false);
    runtime->staleTime = 1min; // so long the start takes
    QTest::keyClick(popover->window(), Qt::Key_Tab);
    ASSERT_EQ(focused(), u"headerAction"_s);
    QTest::keyClick(popover->window(), Qt::Key_Space);
    world.run(10s);
    EXPECT_EQ(textsIn(*find(u"status"_s)), QStringList(u"Starting"_s));
    EXPECT_FALSE(find(u"headerAction"_s)->isEnabled());
    EXPECT_FALSE(find(u"copyPAC"_s)->isEnabled());
    EXPECT_FALSE(find(u"webGUI"_s)->isEnabled());
    EXPECT_TRUE(find(u"quit"_s)->isEnabled());
    EXPECT_FALSE(find(u"serviceError"_s)->isVisible());
    world.run(2min);
}

TEST_F(Popover, aRowTellsWhatWentWrongToScreenReadersToo)
{
    service->tunnels.answer({tunnel(u"db"_s, u"starting"_s, u"refused"_s)});
    refresh();
    open();
    const auto *mark = find(u"tunnel.db"_s)->findChild<QQuickItem *>(u"stateMark"_s);
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->property("help"), u"refused"_s);
}

TEST_F(Popover, withoutAScreenItStaysClosed)
{
    refresh();
    open();
    const NoScreens unplugged;
    ASSERT_EQ(QGuiApplication::primaryScreen(), nullptr);
    auto *view = find(u"popover"_s)->property("view").value<VeranoxMenuView *>();
    view->presentation()->adoptContentHeight(50); // content that changes makes it fit itself anew
    popover->close();
    popover->show({400, 0, 22, 22});
    EXPECT_FALSE(popover->isShown());
}

TEST_F(Popover, theQuitPanelWaitsForAScreen)
{
    VeranoxQuitConfirmationPresenter presenter(engine);
    {
        const NoScreens unplugged;
        presenter.present(*store, [] { FAIL(); });
        EXPECT_EQ(presenter.window(), nullptr);
    }
    presenter.present(*store, [] { FAIL(); });
    ASSERT_NE(presenter.window(), nullptr);
    const NoScreens unplugged;
    itemNamed(presenter.window()->contentItem(), u"quitConfirmation"_s)->setImplicitHeight(50);
    EXPECT_EQ(presenter.window()->height(), 50);
}

TEST_F(Popover, closesOnEscapeAndOpensAgain)
{
    open();
    QTest::keyClick(popover->window(), Qt::Key_Escape);
    EXPECT_FALSE(popover->isShown());
    open();
    EXPECT_TRUE(popover->isShown());
}

TEST_F(Popover, closesWhenTheFocusLeavesItAndKnowsTheClickThatTookIt)
{
    open();
    QQuickWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(QTest::qWaitFor([&] { return popover->hasJustLostFocus(); }));
    world.run(99ms);
    EXPECT_TRUE(popover->isShown());
    world.run(1ms);
    EXPECT_FALSE(popover->isShown());
    EXPECT_TRUE(popover->hasJustLostFocus());
    world.run(200ms);
    EXPECT_FALSE(popover->hasJustLostFocus());
}

TEST_F(Popover, staysWhenTheFocusComesBackAtOnce)
{
    open();
    QQuickWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(QTest::qWaitFor([&] { return popover->hasJustLostFocus(); }));
    world.run(50ms);
    popover->window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(popover->window()));
    EXPECT_FALSE(popover->hasJustLostFocus());
    world.run(1s);
    EXPECT_TRUE(popover->isShown());
}

TEST_F(Popover, isWalkedThroughByKeyboardInReadingOrder)
{
    refresh();
    open();
    QStringList order;
    for (int step = 0; step < 4; ++step) {
        QTest::keyClick(popover->window(), Qt::Key_Tab);
        order.append(focused());
    }
    EXPECT_EQ(order, (QStringList{u"headerAction"_s, u"copyPAC"_s, u"webGUI"_s, u"quit"_s}));
    QTest::keyClick(popover->window(), Qt::Key_Return);
    EXPECT_EQ(quitRequests, 1);
    popover->close();
    open();
    QTest::keyClick(popover->window(), Qt::Key_Tab);
    EXPECT_EQ(focused(), u"headerAction"_s); // each opening starts at the top
}

TEST_F(Popover, keepsRowsAndFocusOverRefreshes)
{
    service->profiles.answer({profile(u"a"_s, true, u"Running"_s), profile(u"b"_s, true, u"Running"_s)});
    refresh();
    open();
    const auto *row = find(u"profile.b"_s);
    QTest::keyClick(popover->window(), Qt::Key_Tab);
    QTest::keyClick(popover->window(), Qt::Key_Tab);
    ASSERT_EQ(focused(), u"copyPAC"_s);
    service->profiles.answer({profile(u"b"_s, false, u"NeedsLogin"_s), profile(u"c"_s, true, u"Running"_s)});
    refresh();
    EXPECT_EQ(find(u"profile.b"_s), row);
    EXPECT_EQ(focused(), u"copyPAC"_s);
    QTest::keyClick(popover->window(), Qt::Key_Space);
    EXPECT_EQ(copied, QStringList({store->pacURL().toString()}));
}

TEST_F(Popover, changesItsDressWhileItIsOpen)
{
    refresh();
    open();
    const QColor light = popover->window()->grabWindow().pixelColor(60, 10);
    theme.setDark(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return popover->window()->grabWindow().pixelColor(60, 10) != light; }));
}

TEST_F(Popover, theQuitPanelAsksOnceAndClosesBeforeItConfirms)
{
    VeranoxQuitConfirmationPresenter presenter(engine);
    bool wasOpen = true;
    int confirmed = 0;
    const auto confirm = [&] {
        wasOpen = presenter.window() != nullptr;
        ++confirmed;
    };
    presenter.present(*store, confirm);
    presenter.present(*store, confirm);
    ASSERT_TRUE(QTest::qWaitForWindowActive(presenter.window()));
    EXPECT_EQ(presenter.window()->title(), u"Quit Veranox"_s);
    QTest::keyClick(presenter.window(), Qt::Key_Return);
    EXPECT_EQ(confirmed, 1);
    EXPECT_FALSE(wasOpen);
    QCoreApplication::processEvents();
    EXPECT_EQ(presenter.window(), nullptr);
}

TEST_F(Popover, theQuitPanelTakesNoForAnAnswer)
{
    VeranoxQuitConfirmationPresenter presenter(engine);
    int confirmed = 0;
    presenter.present(*store, [&] { ++confirmed; });
    ASSERT_TRUE(QTest::qWaitForWindowActive(presenter.window()));
    QTest::keyClick(presenter.window(), Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(presenter.window(), nullptr);
    EXPECT_EQ(confirmed, 0);
}
