#include "MenuBar/PopoverPlacement.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

namespace {

constexpr QRect screen(0, 0, 1920, 1080);
constexpr QSize popover(796, 400);

struct Case {
    const char *title;
    QRect screen;
    QRect free;
    QRect icon;
    PanelSide side;
    QPoint place;
};

const Case cases[] = {
    {"below a panel at the top", screen, {0, 30, 1920, 1050}, {1000, 4, 22, 22}, PanelSide::top, {613, 34}},
    {"not beyond the right edge", screen, {0, 30, 1920, 1050}, {1890, 4, 22, 22}, PanelSide::top, {1120, 34}},
    {"not beyond the left edge", screen, {0, 30, 1920, 1050}, {4, 4, 22, 22}, PanelSide::top, {4, 34}},
    {"above a panel at the bottom", screen, {0, 0, 1920, 1040}, {1000, 1050, 22, 22}, PanelSide::bottom, {613, 636}},
    {"right of a panel at the left", screen, {40, 0, 1880, 1080}, {9, 600, 22, 22}, PanelSide::left, {44, 411}},
    {"left of a panel at the right", screen, {0, 0, 1880, 1080}, {1889, 600, 22, 22}, PanelSide::right, {1080, 411}},
    {"an icon at the lower end of a side panel", screen, {40, 0, 1880, 1080}, {9, 1040, 22, 22}, PanelSide::left,
        {44, 676}},
    {"an icon in a panel that hides itself", screen, screen, {1000, 0, 22, 22}, PanelSide::top, {613, 26}},
    {"a point instead of an icon", screen, {0, 30, 1920, 1050}, {1000, 15, 1, 1}, PanelSide::top, {603, 34}},
    {"nothing known, panel at the top", screen, {0, 30, 1920, 1050}, {}, PanelSide::top, {1120, 34}},
    {"nothing known, panel at the bottom", screen, {0, 0, 1920, 1040}, {}, PanelSide::bottom, {1120, 636}},
    {"nothing known, panel at the left", screen, {40, 0, 1880, 1080}, {}, PanelSide::left, {44, 676}},
    {"nothing known, panel at the right", screen, {0, 0, 1880, 1080}, {}, PanelSide::right, {1080, 676}},
    {"nothing known, no panel", screen, screen, {}, PanelSide::top, {1120, 4}},
    {"a screen to the left of the first", {-1280, 0, 1280, 1024}, {-1280, 30, 1280, 994}, {-60, 4, 22, 22},
        PanelSide::top, {-800, 34}},
    {"a screen that is too small", {0, 0, 640, 480}, {0, 30, 640, 450}, {600, 4, 22, 22}, PanelSide::top, {4, 34}},
};

} // namespace

TEST(PopoverPlacement, standsBesideTheIcon)
{
    for (const Case &row : cases) {
        EXPECT_EQ(panelSide(row.icon, row.screen, row.free), row.side) << row.title;
        EXPECT_EQ(popoverPosition(row.icon, row.free, row.side, popover), row.place) << row.title;
    }
}

TEST(PopoverPlacement, neverLeavesWhatIsFreeOfPanels)
{
    const QRect free(0, 30, 1920, 1050);
    for (int x = -50; x < 2000; x += 37) {
        for (int y = -50; y < 1150; y += 41) {
            const QRect icon(x, y, 22, 22);
            const QRect place(popoverPosition(icon, free, panelSide(icon, screen, free), popover), popover);
            EXPECT_TRUE(free.contains(place)) << x << ' ' << y;
        }
    }
}
