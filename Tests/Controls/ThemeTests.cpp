#include "Tests/Support/QmlStage.h"
#include <QColor>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Relative luminance and contrast as the web accessibility guidelines define them.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(double(color.redF())) + 0.7152 * linear(double(color.greenF()))
        + 0.0722 * linear(double(color.blueF()));
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

class Theme : public QmlStage {
protected:
    QObject *tokens()
    {
        if (!m_holder)
            m_holder = show("Item { readonly property QtObject tokens: Theme }");
        return m_holder->property("tokens").value<QObject *>();
    }

    QColor color(const char *name)
    {
        const auto value = tokens()->property(name).value<QColor>();
        EXPECT_TRUE(value.isValid()) << name;
        return value;
    }

private:
    QQuickItem *m_holder = nullptr; // the stage's
};

struct Pair {
    const char *text;
    const char *surface;
};

constexpr Pair pairs[] = {
    {"text", "window"},
    {"text", "card"},
    {"text", "control"},
    {"text", "controlHovered"},
    {"text", "controlPressed"},
    {"text", "errorSurface"},
    {"text", "warningSurface"},
    {"secondary", "window"},
    {"secondary", "card"},
    {"accentText", "window"},
    {"accentText", "card"},
    {"warningText", "window"},
    {"warningText", "card"},
    {"warningText", "warningSurface"},
    {"errorText", "window"},
    {"errorText", "card"},
    {"errorText", "errorSurface"},
    {"okText", "window"},
    {"okText", "card"},
    {"fillText", "accentFill"},
    {"fillText", "accentFillHovered"},
    {"fillText", "dangerFill"},
    {"fillText", "dangerFillHovered"},
    {"toolTipText", "toolTip"},
};

} // namespace

TEST_F(Theme, letsEveryTextBeRead)
{
    for (const bool dark : {false, true}) {
        theme.setDark(dark);
        for (const auto &[text, surface] : pairs)
            EXPECT_GE(contrast(color(text), color(surface)), 4.5)
                << text << " on " << surface << (dark ? ", dark" : ", light");
    }
}

TEST_F(Theme, letsTheKeyboardFocusBeSeen) // non-text: three to one
{
    for (const bool dark : {false, true}) {
        theme.setDark(dark);
        for (const char *surface : {"window", "card"})
            EXPECT_GE(contrast(color("accent"), color(surface)), 3.0) << surface;
    }
}

TEST_F(Theme, takesTheAccentOfTheDesktopAndKeepsItReadable)
{
    for (const bool dark : {false, true}) {
        theme.setDark(dark);
        for (const QColor accent : {QColor(0x91, 0x41, 0xAC), QColor(Qt::black), QColor(Qt::white), QColor(Qt::yellow),
                 QColor(Qt::blue), QColor(0x80, 0x80, 0x80)}) {
            theme.setAccent(accent);
            for (const char *surface : {"window", "card"}) {
                EXPECT_GE(contrast(color("accent"), color(surface)), 3.0) << surface;
                EXPECT_GE(contrast(color("accentText"), color(surface)), 4.5) << surface;
            }
            EXPECT_GE(contrast(color("fillText"), color("accentFill")), 4.5);
            EXPECT_GE(contrast(color("fillText"), color("accentFillHovered")), 4.5);
        }
    }
    theme.setDark(false);
    theme.setAccent(QColor(0x91, 0x41, 0xAC)); // dark enough as it is
    EXPECT_EQ(color("accent"), QColor(0x91, 0x41, 0xAC));
    EXPECT_EQ(color("accentFill"), QColor(0x91, 0x41, 0xAC));
    theme.setAccent(std::nullopt);
    EXPECT_EQ(color("accent"), QColor(0x00, 0x7A, 0xFF));
}

TEST_F(Theme, followsTheDesktopLive)
{
    EXPECT_EQ(color("window"), QColor(0xF5, 0xF5, 0xF7));
    theme.setDark(true);
    EXPECT_EQ(color("window"), QColor(0x1C, 0x1C, 0x1E));
}

TEST_F(Theme, movesNothingWhenTheDesktopAsksForRest)
{
    EXPECT_GT(tokens()->property("quick").toInt(), 0);
    theme.setReducedMotion(true);
    EXPECT_EQ(tokens()->property("quick").toInt(), 0);
    EXPECT_EQ(tokens()->property("calm").toInt(), 0);
}

TEST_F(Theme, knowsTheColoursOfProfilesAndTakesGrayForOthers)
{
    const auto *item = show("Item { readonly property color known: Theme.profileColor('green'); "
                            "readonly property color unknown: Theme.profileColor('mauve') }");
    EXPECT_EQ(item->property("known").value<QColor>(), QColor(0x34, 0xC7, 0x59));
    EXPECT_EQ(item->property("unknown").value<QColor>(), QColor(0x8E, 0x8E, 0x93));
    theme.setDark(true);
    EXPECT_EQ(item->property("known").value<QColor>(), QColor(0x30, 0xD1, 0x58));
}

TEST(QmlEngine, isNotMadeBeforeAWindowNeedsIt)
{
    FixedTheme theme(false);
    QmlEngine engine(theme);
    theme.setDark(true);
    EXPECT_FALSE(engine.isMade());
    engine.engine();
    EXPECT_TRUE(engine.isMade());
}
