#include "MenuBar/Mark/VeranoxMenuBarMark.h"

#include <gtest/gtest.h>

namespace {

constexpr double none = -1;
constexpr double inGreen = 2;
constexpr double inRed = 3;

// A strength of the foreground or the ink, or one of the three words above.
struct Row {
    MenuBarIcon icon;
    bool isTemplate;
    VeranoxMenuBarMark<double> strengths;
};

constexpr double pulse = 0.8;

const Row table[] = {
    {MenuBarIcon::normal, false, {1, 1, 0.35, inGreen, 0.35, 1, none}},
    {MenuBarIcon::offline, true, {0.55, 0.55, 0.3, 0.55, 0.3, 0.55, none}},
    {MenuBarIcon::starting, true, {0.45, 0.45, 0.3, 0.45, 0.3, pulse, none}},
    {MenuBarIcon::attention, false, {1, 1, 0.35, 0.35, 0.35, 1, inRed}},
    {MenuBarIcon::failed, false, {0.45, 0.45, 0.27, 0.27, 0.27, inRed, inRed}},
};

const QColor foreground(10, 20, 30);
const QColor ink(200, 100, 50);

void expectColor(const QColor &color, double strength, bool isTemplate, const char *part)
{
    SCOPED_TRACE(part);
    if (strength == none) {
        EXPECT_FALSE(color.isValid());
    } else if (strength == inGreen) {
        EXPECT_NEAR(color.redF(), 0.3058823529, 1e-4);
        EXPECT_NEAR(color.greenF(), 0.7882352941, 1e-4);
        EXPECT_NEAR(color.blueF(), 0.5607843137, 1e-4);
        EXPECT_EQ(color.alphaF(), 1);
    } else if (strength == inRed) {
        EXPECT_NEAR(color.redF(), 0.8980392157, 1e-4);
        EXPECT_NEAR(color.greenF(), 0.3294117647, 1e-4);
        EXPECT_NEAR(color.blueF(), 0.2941176471, 1e-4);
        EXPECT_EQ(color.alphaF(), 1);
    } else {
        EXPECT_EQ(color.rgb(), (isTemplate ? ink : foreground).rgb());
        EXPECT_NEAR(color.alphaF(), strength, 1e-4);
    }
}

} // namespace

TEST(VeranoxMenuBarColors, EveryPartOfEveryIconHasItsColor)
{
    for (const auto &[icon, isTemplate, strengths] : table) {
        SCOPED_TRACE(int(icon));
        EXPECT_EQ(isVeranoxMenuBarTemplate(icon), isTemplate);
        const auto colors = veranoxMenuBarColors(icon, pulse, foreground, ink);
        expectColor(colors.input, strengths.input, isTemplate, "input");
        expectColor(colors.branchUp, strengths.branchUp, isTemplate, "branchUp");
        expectColor(colors.branchDown, strengths.branchDown, isTemplate, "branchDown");
        expectColor(colors.node, strengths.node, isTemplate, "node");
        expectColor(colors.live, strengths.live, isTemplate, "live");
        expectColor(colors.muted, strengths.muted, isTemplate, "muted");
        expectColor(colors.badge, strengths.badge, isTemplate, "badge");
    }
}

TEST(VeranoxMenuBarColors, ThePulseTouchesOnlyTheMutedPartOfStarting)
{
    for (const auto &row : table) {
        const auto weak = veranoxMenuBarColors(row.icon, 0.35, foreground, ink);
        auto strong = veranoxMenuBarColors(row.icon, 1, foreground, ink);
        if (row.icon == MenuBarIcon::starting) {
            EXPECT_NEAR(weak.muted.alphaF(), 0.35, 1e-4);
            EXPECT_EQ(strong.muted.alphaF(), 1);
            strong.muted = weak.muted;
        }
        EXPECT_EQ(weak, strong) << int(row.icon);
    }
}

TEST(VeranoxMenuBarColors, APulseOutOfRangeIsBroughtIntoIt)
{
    EXPECT_EQ(veranoxMenuBarColors(MenuBarIcon::starting, -3, foreground, ink).muted.alphaF(), 0);
    EXPECT_EQ(veranoxMenuBarColors(MenuBarIcon::starting, 7, foreground, ink).muted.alphaF(), 1);
}
