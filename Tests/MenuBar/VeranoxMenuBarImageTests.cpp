#include "MenuBar/Mark/VeranoxMenuBarImage.h"

#include "MenuBar/Mark/VeranoxMenuBarMark.h"
#include "Tests/Support/FixedTheme.h"
#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>

namespace {

constexpr MenuBarIcon everyIcon[] = {
    MenuBarIcon::normal, MenuBarIcon::offline, MenuBarIcon::starting, MenuBarIcon::attention, MenuBarIcon::failed};
constexpr int everySize[] = {16, 20, 22, 24, 28, 32, 33, 44, 48, 64};
constexpr int panelSizes[] = {22, 33, 44}; // 100 %, 150 % and 200 %

const FixedTheme light(false);
const FixedTheme dark(true);

QImage draw(MenuBarIcon icon, int size, const SystemTheme &theme = light, double pulse = 1)
{
    const QIcon image = VeranoxMenuBarImage().image(icon, pulse, theme);
    return image.pixmap(QSize(size, size), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
}

// How much of each pixel the shape covers, 0 to 255.
QImage coverage(const QPainterPath &shape, int size)
{
    QImage mask(size, size, QImage::Format_ARGB32);
    mask.fill(Qt::transparent);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, Qt::black);
    return mask;
}

struct Part {
    const char *name;
    QColor color;
    QPainterPath shape;
};

std::vector<Part> partsOf(MenuBarIcon icon, int size, const SystemTheme &theme, double pulse)
{
    const QColor foreground = theme.panelForeground();
    const auto colors = veranoxMenuBarColors(icon, pulse, foreground, foreground);
    const auto shapes = veranoxMenuBarShapes(icon, size);
    return {{"input", colors.input, shapes.input}, {"branchUp", colors.branchUp, shapes.branchUp},
        {"branchDown", colors.branchDown, shapes.branchDown}, {"node", colors.node, shapes.node},
        {"live", colors.live, shapes.live}, {"muted", colors.muted, shapes.muted},
        {"badge", colors.badge, shapes.badge}};
}

// Number of pixels that the shape covers wholly, and how many of them have not the color.
struct Comparison {
    int covered = 0;
    int wrong = 0;
};

Comparison compare(const QImage &image, const Part &part)
{
    const QImage mask = coverage(part.shape, image.width());
    Comparison result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(mask.pixel(x, y)) < 255)
                continue;
            ++result.covered;
            const QColor pixel = image.pixelColor(x, y);
            // Colors are kept premultiplied, which costs faint ones a few steps.
            const bool fits = std::abs(pixel.alpha() - part.color.alpha()) <= 1
                && std::abs(pixel.red() - part.color.red()) <= 4 && std::abs(pixel.green() - part.color.green()) <= 4
                && std::abs(pixel.blue() - part.color.blue()) <= 4;
            result.wrong += !fits;
        }
    }
    return result;
}

// Relative luminance and contrast of WCAG 2.
double luminance(const QColor &color)
{
    const auto linear = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) + 0.0722 * linear(color.blue());
}

double contrast(const QColor &above, const QColor &background)
{
    const auto mixed = [a = above.alpha()](int over, int under) { return (over * a + under * (255 - a)) / 255; };
    const QColor seen(mixed(above.red(), background.red()), mixed(above.green(), background.green()),
        mixed(above.blue(), background.blue()));
    const auto [darker, lighter] = std::minmax({luminance(seen), luminance(background)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

TEST(VeranoxMenuBarImage, EveryPartIsDrawnInItsColor)
{
    for (const SystemTheme *theme : {&light, &dark}) {
        for (const MenuBarIcon icon : everyIcon) {
            for (const int size : panelSizes) {
                const QImage image = draw(icon, size, *theme, 0.8);
                for (const Part &part : partsOf(icon, size, *theme, 0.8)) {
                    SCOPED_TRACE(::testing::Message() << part.name << " of " << int(icon) << " at " << size);
                    if (!part.color.isValid())
                        continue;
                    ASSERT_FALSE(part.shape.isEmpty());
                    const auto [covered, wrong] = compare(image, part);
                    if (size == 44) // at 22 pixels a slanted line may cover no pixel wholly
                        EXPECT_GT(covered, 0);
                    EXPECT_EQ(wrong, 0) << "of " << covered;
                }
            }
        }
    }
}

TEST(VeranoxMenuBarImage, OnlyIconsThatNeedAPersonHaveABadge)
{
    for (const MenuBarIcon icon : everyIcon) {
        const bool wanted = icon == MenuBarIcon::attention || icon == MenuBarIcon::failed;
        EXPECT_EQ(!veranoxMenuBarShapes(icon, 44).badge.isEmpty(), wanted) << int(icon);
    }
}

TEST(VeranoxMenuBarImage, PartsDoNotOverlap)
{
    for (const MenuBarIcon icon : everyIcon) {
        for (const int size : everySize) {
            const auto parts = partsOf(icon, size, light, 1);
            for (const Part &first : parts) {
                for (const Part &second : parts) {
                    if (&first == &second)
                        continue;
                    const QRectF shared = first.shape.intersected(second.shape).boundingRect();
                    EXPECT_LT(shared.width() * shared.height(), 0.01)
                        << first.name << " and " << second.name << " of " << int(icon) << " at " << size;
                }
            }
        }
    }
}

TEST(VeranoxMenuBarImage, TheBadgeStandsInAClearRing)
{
    for (const MenuBarIcon icon : {MenuBarIcon::attention, MenuBarIcon::failed}) {
        const auto shapes = veranoxMenuBarShapes(icon, 44);
        QPainterPath around;
        const QRectF badge = shapes.badge.boundingRect();
        around.addEllipse(badge.adjusted(-2, -2, 2, 2)); // a point at 200 %
        for (const Part &part : partsOf(icon, 44, light, 1)) {
            if (part.name == std::string_view("badge"))
                continue;
            const QRectF shared = around.intersected(part.shape).boundingRect();
            EXPECT_LT(shared.width() * shared.height(), 0.01) << part.name;
        }
    }
}

TEST(VeranoxMenuBarImage, TheMarkKeepsWithin21By18Points)
{
    for (const MenuBarIcon icon : everyIcon) {
        for (const int size : everySize) {
            QRectF bounds;
            for (const Part &part : partsOf(icon, size, light, 1))
                bounds |= part.shape.boundingRect();
            const double point = size / 22.0;
            EXPECT_LE(bounds.width(), 21 * point + 1) << int(icon) << " at " << size;
            EXPECT_LE(bounds.height(), 18 * point + 1) << int(icon) << " at " << size;
            EXPECT_GE(bounds.left(), 0);
            EXPECT_GE(bounds.top(), 0);
            EXPECT_LE(bounds.right(), size);
            EXPECT_LE(bounds.bottom(), size);
        }
    }
}

TEST(VeranoxMenuBarImage, LevelLinesAreSharp)
{
    for (const int size : everySize) {
        const QImage image = draw(MenuBarIcon::normal, size);
        const auto shapes = veranoxMenuBarShapes(MenuBarIcon::normal, size);
        for (const auto *bar : {&shapes.input, &shapes.muted}) {
            const int column = int(bar->boundingRect().center().x());
            const QRectF bounds = bar->boundingRect();
            for (int row = int(bounds.top()) - 1; row <= int(bounds.bottom()) + 1; ++row) {
                const int alpha = qAlpha(image.pixel(column, row));
                EXPECT_TRUE(alpha == 0 || alpha == 255) << "alpha " << alpha << " in row " << row << " at " << size;
            }
        }
    }
}

TEST(VeranoxMenuBarImage, IconsAreToldApartByShapeAlone)
{
    const auto silhouette = [](MenuBarIcon icon, int size) {
        QPainterPath shape;
        for (const Part &part : partsOf(icon, size, light, 1))
            shape.addPath(part.shape);
        shape.setFillRule(Qt::OddEvenFill);
        return coverage(shape, size);
    };
    for (const MenuBarIcon first : everyIcon) {
        for (const MenuBarIcon second : everyIcon) {
            if (first >= second)
                continue;
            const QImage a = silhouette(first, 22);
            const QImage b = silhouette(second, 22);
            int difference = 0; // in whole pixels
            for (int y = 0; y < 22; ++y) {
                for (int x = 0; x < 22; ++x)
                    difference += std::abs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y)));
            }
            EXPECT_GE(difference / 255, 4) << int(first) << " and " << int(second);
        }
    }
}

TEST(VeranoxMenuBarImage, TheMarkIsSeenOnLightAndDarkPanels)
{
    const std::pair<const SystemTheme *, QColor> panels[] = {
        {&light, QColor(0xEC, 0xEC, 0xEE)}, {&dark, QColor(0x26, 0x26, 0x28)}};
    for (const auto &[theme, panel] : panels) {
        for (const MenuBarIcon icon : everyIcon) {
            double best = 0;
            for (const Part &part : partsOf(icon, 22, *theme, 1)) {
                if (part.color.isValid())
                    best = std::max(best, contrast(part.color, panel));
            }
            EXPECT_GE(best, 3) << int(icon) << (theme == &dark ? " on dark" : " on light");
        }
    }
}

TEST(VeranoxMenuBarImage, OfflineIsDrawnOnceForAPanel)
{
    VeranoxMenuBarImage images;
    const auto key = [&](const SystemTheme &theme, double pulse = 1) {
        return images.image(MenuBarIcon::offline, pulse, theme).cacheKey();
    };
    const auto first = key(light);
    images.image(MenuBarIcon::normal, 1, light);
    EXPECT_EQ(key(light), first);
    EXPECT_EQ(key(light, 0.35), first);
    EXPECT_NE(key(dark), first) << "the panel has another colour now";
}

TEST(VeranoxMenuBarImage, ThePulseIsSeen)
{
    EXPECT_NE(draw(MenuBarIcon::starting, 22, light, 0.35), draw(MenuBarIcon::starting, 22, light, 1));
    EXPECT_EQ(draw(MenuBarIcon::attention, 22, light, 0.35), draw(MenuBarIcon::attention, 22, light, 1));
}

TEST(VeranoxMenuBarImage, WhereTheSystemColorsTemplatesTheyAreBlackMasks)
{
    const FixedTheme menuBar(true, true);
    VeranoxMenuBarImage images;
    for (const MenuBarIcon icon : everyIcon)
        EXPECT_EQ(images.image(icon, 1, menuBar).isMask(), isVeranoxMenuBarTemplate(icon)) << int(icon);
    const QImage offline = draw(MenuBarIcon::offline, 22, menuBar);
    EXPECT_EQ(offline.pixelColor(2, 11), QColor(0, 0, 0, 140)) << "0.55 of the input line";
}

TEST(VeranoxMenuBarImage, ElsewhereTemplatesTakeTheColorOfThePanel)
{
    VeranoxMenuBarImage images;
    EXPECT_FALSE(images.image(MenuBarIcon::offline, 1, dark).isMask());
    EXPECT_GT(draw(MenuBarIcon::offline, 22, dark).pixelColor(2, 11).lightness(), 200);
    EXPECT_LT(draw(MenuBarIcon::offline, 22, light).pixelColor(2, 11).lightness(), 60);
}

TEST(VeranoxMenuBarImage, ItIsCenteredInARectangle)
{
    QImage canvas(60, 22, QImage::Format_ARGB32);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    VeranoxMenuBarImage().image(MenuBarIcon::normal, 1, light).paint(&painter, canvas.rect());
    painter.end();
    EXPECT_EQ(canvas.copy(19, 0, 22, 22), draw(MenuBarIcon::normal, 22));
}

TEST(VeranoxMenuBarImage, TinySizesAreDrawnWithoutHarm)
{
    for (const MenuBarIcon icon : everyIcon) {
        for (int size = 1; size < 16; ++size)
            EXPECT_EQ(draw(icon, size).size(), QSize(size, size));
    }
}
