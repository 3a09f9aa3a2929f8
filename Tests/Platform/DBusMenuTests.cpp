#include "Platform/Linux/DBusMenu/DBusMenuExporter.h"
#include "Platform/Linux/DBusMenu/DBusMenuProperties.h"
#include "Platform/Linux/StatusNotifier/StatusNotifierTypes.h"
#include <QActionGroup>
#include <QCoreApplication>
#include <QPixmap>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

namespace {

// The layout needs no bus.
const QDBusConnection nowhere(u"nowhere"_s);

class DBusMenu : public ::testing::Test {
protected:
    QString labelOf(int id) { return exporter.properties(id)->value(u"label"_s).toString(); }

    QList<int> childrenOf(int id)
    {
        QList<int> children;
        for (const auto &child : exporter.layout(id, 1, {})->children)
            children << child.id;
        return children;
    }

    QMenu menu;
    QAction *open = menu.addAction(u"Open Options… (⌃⌥,)"_s);
    QAction *separator = menu.addSeparator();
    QMenu *more = menu.addMenu(u"&More"_s);
    QAction *inner = more->addAction(u"Inner"_s);
    DBusMenuExporter exporter{&menu, nowhere, u"/Menu"_s};
};

} // namespace

TEST(DBusMenuLabel, AccessKeysAndUnderscoresAreTranslated)
{
    const std::pair<QString, QString> table[] = {
        {u"Open"_s, u"Open"_s},
        {u""_s, u""_s},
        {u"&Open"_s, u"_Open"_s},
        {u"Open &Options…"_s, u"Open _Options…"_s},
        {u"Salt && Pepper"_s, u"Salt & Pepper"_s},
        {u"snake_case"_s, u"snake__case"_s},
        {u"__"_s, u"____"_s},
        {u"&_x"_s, u"___x"_s}, // an access key that is an underscore
        {u"Trailing&"_s, u"Trailing"_s},
        {u"Quit\tCtrl+Q"_s, u"Quit"_s},
        {u"&&&Quit_now"_s, u"&_Quit__now"_s},
    };
    for (const auto &[text, label] : table)
        EXPECT_EQ(dbusMenuLabel(text), label) << qUtf8Printable(text);
}

TEST_F(DBusMenu, TheWholeMenuIsOneLayout)
{
    const auto layout = exporter.layout(0, -1, {});
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->properties[u"children-display"_s], u"submenu"_s);
    ASSERT_EQ(layout->children.size(), 3);
    EXPECT_EQ(layout->children[0].properties[u"label"_s], u"Open Options… (⌃⌥,)"_s);
    EXPECT_EQ(layout->children[1].properties[u"type"_s], u"separator"_s);
    EXPECT_EQ(layout->children[2].properties[u"children-display"_s], u"submenu"_s);
    ASSERT_EQ(layout->children[2].children.size(), 1);
    EXPECT_EQ(layout->children[2].children[0].properties[u"label"_s], u"Inner"_s);
}

TEST_F(DBusMenu, DepthAndNamesLimitTheLayout)
{
    EXPECT_TRUE(exporter.layout(0, 0, {})->children.isEmpty());
    const auto one = exporter.layout(0, 1, {u"enabled"_s, u"no-such-name"_s});
    ASSERT_EQ(one->children.size(), 3);
    EXPECT_TRUE(one->children[2].children.isEmpty());
    EXPECT_EQ(one->children[0].properties, (QVariantMap{{u"enabled"_s, true}}));
}

TEST_F(DBusMenu, AnUnknownNumberIsRefused)
{
    EXPECT_FALSE(exporter.layout(99, -1, {}));
    EXPECT_FALSE(exporter.properties(99));
    EXPECT_FALSE(exporter.properties(-1));
    EXPECT_FALSE(exporter.handleEvent(99, u"clicked"_s));
    EXPECT_FALSE(exporter.prepareToShow(99));
    EXPECT_FALSE(exporter.prepareToShow(childrenOf(0)[0])) << "an item without a submenu";
}

TEST_F(DBusMenu, FlagsAndChecksAreTold)
{
    const int id = childrenOf(0)[0];
    open->setEnabled(false);
    open->setVisible(false);
    open->setCheckable(true);
    open->setChecked(true);
    const auto properties = *exporter.properties(id);
    EXPECT_EQ(properties[u"enabled"_s], false);
    EXPECT_EQ(properties[u"visible"_s], false);
    EXPECT_EQ(properties[u"toggle-type"_s], u"checkmark"_s);
    EXPECT_EQ(properties[u"toggle-state"_s], 1);

    QActionGroup group(&menu);
    group.addAction(open);
    EXPECT_EQ(exporter.properties(id)->value(u"toggle-type"_s), u"radio"_s);
}

TEST_F(DBusMenu, AClickTriggersTheActionAfterTheAnswer)
{
    int triggered = 0;
    QObject::connect(inner, &QAction::triggered, &menu, [&] { ++triggered; });
    const int id = childrenOf(childrenOf(0)[2])[0];
    EXPECT_TRUE(exporter.handleEvent(id, u"hovered"_s));
    EXPECT_TRUE(exporter.handleEvent(id, u"clicked"_s));
    EXPECT_EQ(triggered, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(triggered, 1);
}

TEST_F(DBusMenu, AClickOnADisabledItemDoesNothing)
{
    int triggered = 0;
    QObject::connect(open, &QAction::triggered, &menu, [&] { ++triggered; });
    open->setEnabled(false);
    exporter.handleEvent(childrenOf(0)[0], u"clicked"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(triggered, 0);
}

TEST_F(DBusMenu, TheOwnerMayChangeTheMenuAsItIsShown)
{
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this] {
        if (menu.actions().size() == 3)
            menu.addAction(u"Late"_s);
    });
    EXPECT_EQ(exporter.prepareToShow(0), true);
    EXPECT_EQ(exporter.layout(0, 1, {})->children.size(), 4);
    QCoreApplication::processEvents();
    EXPECT_EQ(exporter.prepareToShow(0), false);
}

TEST_F(DBusMenu, ChangesOfTheLayoutAreCountedOncePerTurn)
{
    const uint before = exporter.revision();
    menu.addAction(u"One"_s);
    menu.addAction(u"Two"_s);
    delete inner;
    EXPECT_EQ(exporter.revision(), before);
    QCoreApplication::processEvents();
    EXPECT_EQ(exporter.revision(), before + 1);
    open->setText(u"Another text"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(exporter.revision(), before + 1) << "a text is no change of the layout";
    open->setCheckable(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(exporter.revision(), before + 2) << "another kind of item is one";
}

TEST_F(DBusMenu, NumbersStayAndAreNeverUsedTwice)
{
    const auto before = childrenOf(0);
    const int innerId = childrenOf(before[2])[0];
    delete inner;
    EXPECT_FALSE(exporter.properties(innerId));
    QAction *const added = menu.addAction(u"Added"_s);
    const auto after = childrenOf(0);
    EXPECT_EQ(after.first(3), before);
    EXPECT_GT(after[3], innerId);
    menu.removeAction(added);
    menu.addAction(added);
    EXPECT_EQ(childrenOf(0), after);
}

TEST_F(DBusMenu, ASubmenuThatComesLaterIsFollowed)
{
    QMenu late;
    late.addAction(u"First"_s);
    open->setMenu(&late);
    QCoreApplication::processEvents();
    const int id = childrenOf(0)[0];
    EXPECT_EQ(childrenOf(id).size(), 1);
    const uint before = exporter.revision();
    late.addAction(u"Second"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(exporter.revision(), before + 1);
    EXPECT_EQ(childrenOf(id).size(), 2);
    open->setMenu(nullptr);
}

TEST(DBusMenuLifetime, TheMenuMayGoFirst)
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(u"Open"_s);
    DBusMenuExporter exporter(menu.get(), nowhere, u"/Menu"_s);
    ASSERT_EQ(exporter.layout(0, -1, {})->children.size(), 1);
    menu.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(exporter.layout(0, -1, {})->children.isEmpty());
    EXPECT_FALSE(exporter.prepareToShow(0));
    EXPECT_THAT(exporter.ids(), ElementsAre(0));
}

TEST(StatusNotifierPixmaps, AreArgbInNetworkOrderAtThreeSizes)
{
    QPixmap picture(44, 44);
    picture.fill(QColor(0x11, 0x22, 0x33));
    const auto pixmaps = statusNotifierPixmaps(QIcon(picture));
    ASSERT_EQ(pixmaps.size(), 3);
    const int sizes[] = {22, 33, 44};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(pixmaps[i].width, sizes[i]);
        EXPECT_EQ(pixmaps[i].height, sizes[i]);
        EXPECT_EQ(pixmaps[i].pixels.size(), sizes[i] * sizes[i] * 4);
        EXPECT_EQ(pixmaps[i].pixels.first(4).toHex(), "ff112233");
    }
}

TEST(StatusNotifierPixmaps, ANullIconHasNone)
{
    EXPECT_TRUE(statusNotifierPixmaps(QIcon()).isEmpty());
}
