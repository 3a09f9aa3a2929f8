// Draws a contact sheet of the menu bar icon into the PNG file that the first argument names: every state on a light
// and a dark panel, at 100 %, 150 % and 200 % scale, enlarged eightfold, with the true size beside it.
#include "MenuBar/Mark/VeranoxMenuBarImage.h"
#include "Tests/Support/FixedTheme.h"
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>

namespace {

constexpr int enlargement = 8;
constexpr int tile = 44 * enlargement + 16;
constexpr int strip = 60; // for the true sizes

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: %s FILE.png\n", argv[0]);
        return 2;
    }
    const MenuBarIcon icons[] = {
        MenuBarIcon::normal, MenuBarIcon::offline, MenuBarIcon::starting, MenuBarIcon::attention, MenuBarIcon::failed};
    const int sizes[] = {22, 33, 44};
    QImage sheet(int(std::size(icons)) * tile, 2 * (strip + int(std::size(sizes)) * tile), QImage::Format_ARGB32);
    QPainter painter(&sheet);
    VeranoxMenuBarImage images;
    int top = 0;
    for (const bool isDark : {false, true}) {
        const FixedTheme theme(isDark);
        painter.fillRect(QRect(0, top, sheet.width(), sheet.height() / 2),
            isDark ? QColor(0x26, 0x26, 0x28) : QColor(0xEC, 0xEC, 0xEE));
        int left = 0;
        for (const MenuBarIcon icon : icons) {
            const QIcon image = images.image(icon, 0.8, theme);
            int x = left + 8;
            int y = top + strip;
            for (const int size : sizes) {
                const QPixmap pixmap = image.pixmap(QSize(size, size), 1.0);
                painter.drawPixmap(x, top + 8, pixmap);
                x += size + 12;
                painter.drawPixmap(left + 8, y, pixmap.scaled(pixmap.size() * enlargement));
                y += tile;
            }
            left += tile;
        }
        top += sheet.height() / 2;
    }
    return sheet.save(arguments[1]) ? 0 : 1;
}
