#include "Controls/VeranoxRuntimeStateIndicator.h"
#include "Tests/Support/QmlStage.h"
#include <QAccessible>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

class Controls : public QmlStage {
protected:
    static QAccessibleInterface *accessible(QQuickItem *item) { return QAccessible::queryAccessibleInterface(item); }

    static void invoke(QQuickItem *item, const QString &action)
    {
        auto *actions = accessible(item)->actionInterface();
        ASSERT_NE(actions, nullptr);
        ASSERT_TRUE(actions->actionNames().contains(action));
        actions->doAction(action);
    }
};

} // namespace

TEST_F(Controls, buttonsWorkByMouseKeyboardAndScreenReader)
{
    for (const QByteArray type : {"ActionButton", "IconButton", "CopyButton"}) {
        auto *button = show(type + " { text: 'Copy'; symbol: 'plus'; help: 'Copies the address' }");
        QSignalSpy clicks(button, SIGNAL(clicked()));
        click(*button);
        EXPECT_EQ(clicks.size(), 1) << type.constData();
        for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
            QTest::keyClick(&window, key);
        EXPECT_EQ(clicks.size(), 4) << type.constData();
        invoke(button, QAccessibleActionInterface::pressAction());
        EXPECT_EQ(clicks.size(), 5) << type.constData();
        EXPECT_EQ(accessible(button)->role(), QAccessible::Button);
        EXPECT_EQ(accessible(button)->text(QAccessible::Name), u"Copy"_s);
    }
}

TEST_F(Controls, disabledButtonsDoNothing)
{
    auto *button = show("ActionButton { text: 'Copy'; enabled: false }");
    QSignalSpy clicks(button, SIGNAL(clicked()));
    click(*button);
    QTest::keyClick(&window, Qt::Key_Return);
    accessible(button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks.size(), 0);
}

TEST_F(Controls, aButtonSaysWhatItsWordsLeaveOut)
{
    auto *button = show("ActionButton { text: 'Copy PAC'; help: 'Copies the address' }");
    EXPECT_EQ(accessible(button)->text(QAccessible::Description), u"Copies the address"_s);
}

TEST_F(Controls, aSwitchAsksAndShowsWhatIsTrue)
{
    auto *toggle = show("ToggleSwitch { text: 'db'; on: false }");
    QSignalSpy asked(toggle, SIGNAL(switched(bool)));
    click(*toggle);
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.last().value(0), true);
    EXPECT_FALSE(toggle->property("on").toBool()); // nobody has answered yet
    toggle->setProperty("on", true);
    QTest::keyClick(&window, Qt::Key_Space);
    ASSERT_EQ(asked.size(), 2);
    EXPECT_EQ(asked.last().value(0), false);
}

TEST_F(Controls, aSwitchIsACheckBoxForAScreenReader)
{
    auto *toggle = show("ToggleSwitch { text: 'db'; on: true; help: 'Stop this tunnel' }");
    EXPECT_EQ(accessible(toggle)->role(), QAccessible::CheckBox);
    EXPECT_TRUE(accessible(toggle)->state().checked);
    EXPECT_EQ(accessible(toggle)->text(QAccessible::Name), u"db"_s);
    EXPECT_EQ(accessible(toggle)->text(QAccessible::Description), u"Stop this tunnel"_s);
    QSignalSpy asked(toggle, SIGNAL(switched(bool)));
    invoke(toggle, QAccessibleActionInterface::toggleAction());
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.last().value(0), false);
}

TEST_F(Controls, theKeyboardFocusIsSeenAndThePointersIsNot)
{
    auto *row = show("Row { ActionButton { objectName: 'one'; text: 'One' } "
                     "ToggleSwitch { objectName: 'two'; text: 'Two' } }");
    ASSERT_NE(row, nullptr);
    click(*find(u"one"_s));
    EXPECT_FALSE(find(u"one"_s)->property("visualFocus").toBool());
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_TRUE(find(u"two"_s)->property("visualFocus").toBool());
    QTest::keyClick(&window, Qt::Key_Backtab);
    EXPECT_TRUE(find(u"one"_s)->property("visualFocus").toBool());
}

TEST_F(Controls, copyingIsConfirmedByACheckMark)
{
    auto *button = show("CopyButton { text: 'Copy' }");
    EXPECT_EQ(button->property("symbol"), u"doc.on.doc"_s);
    button->setProperty("justCopied", true);
    EXPECT_EQ(button->property("symbol"), u"checkmark"_s);
    EXPECT_EQ(accessible(button)->text(QAccessible::Description), u"Copied"_s);
}

TEST_F(Controls, aSpinnerTurnsWhileItIsSeenAndNotWhenTheDesktopAsksForRest)
{
    auto *spinner = show("Spinner { }");
    EXPECT_TRUE(QTest::qWaitFor([spinner] { return spinner->property("step").toInt() > 0; }));
    spinner->setVisible(false);
    const int step = spinner->property("step").toInt();
    QTest::qWait(250);
    EXPECT_EQ(spinner->property("step").toInt(), step);
    theme.setReducedMotion(true);
    spinner->setVisible(true);
    QTest::qWait(250);
    EXPECT_EQ(spinner->property("step").toInt(), step);
}

TEST_F(Controls, aBannerIsAnAlertWithItsWords)
{
    auto *banner = show("Banner { title: 'Stopped'; text: 'Nothing is routed.' }");
    EXPECT_EQ(accessible(banner)->role(), QAccessible::AlertMessage);
    EXPECT_EQ(accessible(banner)->text(QAccessible::Name), u"Stopped"_s);
    EXPECT_EQ(accessible(banner)->text(QAccessible::Description), u"Nothing is routed."_s);
}

TEST_F(Controls, aStateIsSaidInWords)
{
    auto *mark = show("StateMark { help: 'Listening' }");
    EXPECT_EQ(accessible(mark)->text(QAccessible::Name), u"Listening"_s);
    auto *badge = show("Badge { text: 'Published'; kind: Badge.Kind.Ok }");
    EXPECT_EQ(accessible(badge)->text(QAccessible::Name), u"Published"_s);
}

TEST_F(Controls, everyStateHasAShapeOfItsOwn)
{
    QSet<QString> shapes;
    for (int kind = 0; kind < 4; ++kind) {
        auto *badge = show("Badge { text: 'x'; kind: " + QByteArray::number(kind) + " }");
        shapes.insert(badge->property("symbol").toString());
    }
    EXPECT_EQ(shapes.size(), 4);
}

// QML counts what C++ names: the two lists have to stand in the same order.
TEST_F(Controls, aMarkIsDrawnAsTheStateSays)
{
    using Mark = VeranoxRuntimeStateIndicator::Mark;
    const std::pair<Mark, int> table[] = {{Mark::dot, 0}, {Mark::spinner, 1}, {Mark::blocked, 2}};
    for (const auto &[mark, place] : table) {
        const auto *item = show("StateMark { kind: " + QByteArray::number(int(mark)) + " }");
        for (int child = 0; child < 3; ++child)
            EXPECT_EQ(item->childItems().at(child)->isVisible(), child == place) << int(mark) << ' ' << child;
    }
}

TEST_F(Controls, aBadgeIsDrawnAsTheStateSays)
{
    using Kind = VeranoxStatusBadge::Kind;
    const std::pair<Kind, QString> table[] = {{Kind::ok, u"checkmark"_s},
        {Kind::warning, u"exclamationmark.triangle.fill"_s}, {Kind::offline, u"power"_s},
        {Kind::error, u"exclamationmark.circle.fill"_s}};
    for (const auto &[kind, symbol] : table) {
        const auto *badge = show("Badge { text: 'x'; kind: " + QByteArray::number(int(kind)) + " }");
        EXPECT_EQ(badge->property("symbol"), symbol);
    }
}

TEST_F(Controls, aToolTipIsThereWhileItIsWantedAndNotBefore)
{
    auto *item = show("Item { width: 40; height: 20; Tip { objectName: 'tip'; text: 'Copies it' } }");
    ASSERT_NE(item, nullptr);
    QQuickItem *tip = find(u"tip"_s);
    QQuickItem *loader = tip->childItems().constFirst();
    EXPECT_EQ(loader->property("item").value<QObject *>(), nullptr);
    tip->setProperty("wanted", true);
    auto *bubble = loader->property("item").value<QObject *>();
    ASSERT_NE(bubble, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([bubble] { return bubble->property("opened").toBool(); }));
    tip->setProperty("wanted", false);
    EXPECT_EQ(loader->property("item").value<QObject *>(), nullptr);
}
