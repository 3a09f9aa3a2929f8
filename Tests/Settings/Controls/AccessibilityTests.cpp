#include "Tests/Support/QmlStage.h"

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

class FocusReveal : public QmlStage {
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

TEST_F(FocusReveal, theKeyboardIsNeverOutOfSight)
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

TEST_F(FocusReveal, thereIsRoomAroundIt)
{
    find(u"button4"_s)->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(scrolled(), 5 * 28 + 10 - 100);
    find(u"button2"_s)->forceActiveFocus(Qt::BacktabFocusReason);
    EXPECT_EQ(scrolled(), 2 * 28 - 10);
}

TEST_F(FocusReveal, whatThePointerPressesStaysUnderIt)
{
    QTest::mouseClick(&window, Qt::LeftButton, {}, {20, 90}); // the fourth, of which a part is seen
    EXPECT_TRUE(find(u"button3"_s)->hasActiveFocus());
    EXPECT_EQ(scrolled(), 0);
}
