#include "Tests/Support/QmlStage.h"
#include <QAccessible>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// Ten buttons of 28 pixels in a view of 100.
constexpr auto tallPage = R"(
    Flickable {
        id: page
        width: 300; height: 100
        contentHeight: column.implicitHeight
        FocusReveal { flickable: page; room: 10 }
        Column {
            id: column
            Repeater {
                model: 10
                ActionButton { required property int index; objectName: 'button' + index; text: 'Button ' + index }
            }
        }
    })";

class FocusRevealing : public QmlStage {
protected:
    void SetUp() override
    {
        page = show(tallPage);
        ASSERT_NE(page, nullptr);
        page->setFocus(false);
    }

    double scrolled() const { return page->property("contentY").toDouble(); }

    QQuickItem *page = nullptr;
};

} // namespace

TEST_F(FocusRevealing, theKeyboardIsNeverOutOfSight)
{
    for (int index = 0; index < 10; ++index) {
        find(u"button%1"_s.arg(index))->forceActiveFocus(Qt::TabFocusReason);
        const double top = 28.0 * index;
        EXPECT_LE(scrolled(), top) << index;
        EXPECT_GE(scrolled() + 100, top + 28) << index;
    }
    EXPECT_EQ(scrolled(), 180); // the end
    find(u"button8"_s)->forceActiveFocus(Qt::BacktabFocusReason);
    EXPECT_EQ(scrolled(), 180) << "what is seen already does not move";
    find(u"button0"_s)->forceActiveFocus(Qt::BacktabFocusReason);
    EXPECT_EQ(scrolled(), 0);
}

TEST_F(FocusRevealing, thereIsRoomAroundIt)
{
    find(u"button4"_s)->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(scrolled(), 5 * 28 + 10 - 100);
    find(u"button2"_s)->forceActiveFocus(Qt::BacktabFocusReason);
    EXPECT_EQ(scrolled(), 2 * 28 - 10);
}

TEST_F(FocusRevealing, whatThePointerPressesStaysUnderIt)
{
    QTest::mouseClick(&window, Qt::LeftButton, {}, {20, 90}); // the fourth, of which a part is seen
    EXPECT_TRUE(find(u"button3"_s)->hasActiveFocus());
    EXPECT_EQ(scrolled(), 0);
}

namespace {

class AccessibleControls : public QmlStage {
protected:
    static QAccessibleInterface &told(QQuickItem *item) { return *QAccessible::queryAccessibleInterface(item); }
    static QStringList actions(QQuickItem *item) { return told(item).actionInterface()->actionNames(); }
    static void act(QQuickItem *item, const QString &action) { told(item).actionInterface()->doAction(action); }
};

const QString press = QAccessibleActionInterface::pressAction();
const QString toggle = QAccessibleActionInterface::toggleAction();
const QString setFocus = QAccessibleActionInterface::setFocusAction();

} // namespace

TEST_F(AccessibleControls, aDisabledControlSaysSoAndOffersNothing)
{
    auto *button = show("ActionButton { text: 'Copy' }");
    EXPECT_FALSE(told(button).state().disabled);
    EXPECT_TRUE(told(button).state().focusable);
    EXPECT_EQ(actions(button), QStringList({press, setFocus}));
    button->setEnabled(false);
    EXPECT_TRUE(told(button).state().disabled);
    EXPECT_FALSE(told(button).state().focusable);
    EXPECT_EQ(actions(button), QStringList());
    QSignalSpy clicks(button, SIGNAL(clicked()));
    act(button, press);
    EXPECT_EQ(clicks.size(), 0);
}

TEST_F(AccessibleControls, aSwitchIsToggledOnceByEitherAction)
{
    auto *item = show("ToggleSwitch { text: 'db'; on: true }");
    EXPECT_EQ(actions(item), QStringList({toggle, press, setFocus}));
    EXPECT_TRUE(told(item).state().checkable);
    EXPECT_TRUE(told(item).state().checked);
    QSignalSpy asked(item, SIGNAL(switched(bool)));
    act(item, toggle);
    act(item, press);
    EXPECT_EQ(asked.size(), 2);
    item->setProperty("on", false);
    EXPECT_FALSE(told(item).state().checked);
}

TEST_F(AccessibleControls, theFocusCanBeGivenAndIsTold)
{
    show("Row { ActionButton { objectName: 'one'; text: 'One' } ActionButton { objectName: 'two'; text: 'Two' } }");
    act(find(u"two"_s), setFocus);
    EXPECT_TRUE(told(find(u"two"_s)).state().focused);
    EXPECT_FALSE(told(find(u"one"_s)).state().focused);
}

TEST_F(AccessibleControls, itTellsWhereItStandsAndWhetherThatIsSeen)
{
    auto *page = show(tallPage);
    const QRect first = told(find(u"button0"_s)).rect();
    EXPECT_EQ(first.topLeft(), window.mapToGlobal(QPoint(0, 0)));
    EXPECT_EQ(first.height(), 28);
    page->setProperty("clip", true);
    EXPECT_FALSE(told(find(u"button0"_s)).state().offscreen);
    EXPECT_TRUE(told(find(u"button9"_s)).state().offscreen);
    find(u"button0"_s)->setVisible(false);
    EXPECT_TRUE(told(find(u"button0"_s)).state().invisible);
}

TEST_F(AccessibleControls, parentsAndChildrenKnowEachOther)
{
    auto *list = show("Item { Accessible.role: Accessible.List; Accessible.name: 'all'; "
                      "Item { ActionButton { objectName: 'one'; text: 'One' } } }");
    auto &button = told(find(u"one"_s));
    EXPECT_EQ(button.parent(), &told(list));
    EXPECT_EQ(told(list).indexOfChild(&button), 0);
    EXPECT_EQ(told(list).child(0), &button);
    auto *alone = show("ActionButton { text: 'Alone' }");
    EXPECT_EQ(told(alone).parent(), QAccessible::queryAccessibleInterface(&window));
}
