// Puts a status item up and writes one line for each thing that happens to it, to try a panel by hand. Lines on
// standard input change it: the name of an icon state, "menu", "geometry" or "quit".
#include "MenuBar/Mark/VeranoxMenuBarImage.h"
#include "Platform/Platform.h"
#include <QApplication>
#include <QMenu>
#include <QSocketNotifier>
#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

QString describe(QPoint point)
{
    return u"%1,%2"_s.arg(point.x()).arg(point.y());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto theme = platform::makeSystemTheme();
    const auto item = platform::makeStatusItem();
    VeranoxMenuBarImage images;
    MenuBarIcon state = MenuBarIcon::normal;
    const auto draw = [&] { item->setIcon(images.image(state, 1, *theme)); };
    draw();
    item->setToolTip(u"Veranox — trial"_s);
    item->setAccessibleName(u"Veranox — trial"_s);

    QMenu menu;
    for (const auto &title : {u"Open Options…"_s, u"About Veranox"_s, u"Quit Veranox…"_s})
        QObject::connect(
            menu.addAction(title), &QAction::triggered, &application, [title] { say(u"chosen "_s + title); });
    item->setMenu(&menu);

    QObject::connect(theme.get(), &SystemTheme::changed, &application, draw);
    QObject::connect(item.get(), &StatusItem::primaryActivated, &application,
        [](QPoint where) { say(u"primary "_s + describe(where)); });
    QObject::connect(item.get(), &StatusItem::menuRequested, &application, [&](QPoint where) {
        say(u"menu "_s + describe(where));
        menu.popup(where);
    });
    QObject::connect(item.get(), &StatusItem::availableChanged, &application,
        [](bool available) { say(available ? u"available"_s : u"unavailable"_s); });

    const std::map<std::string, MenuBarIcon> states{{"normal", MenuBarIcon::normal}, {"offline", MenuBarIcon::offline},
        {"starting", MenuBarIcon::starting}, {"attention", MenuBarIcon::attention}, {"failed", MenuBarIcon::failed}};
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char bytes[256];
        const auto count = read(STDIN_FILENO, bytes, sizeof bytes);
        std::string line(bytes, count > 0 ? std::size_t(count) : 0);
        while (!line.empty() && line.back() == '\n')
            line.pop_back();
        if (count <= 0 || line == "quit")
            return QApplication::quit();
        if (line == "geometry")
            say(u"geometry %1 %2x%3"_s.arg(describe(item->geometry().topLeft()))
                    .arg(item->geometry().width())
                    .arg(item->geometry().height()));
        if (const auto found = states.find(line); found != states.end()) {
            state = found->second;
            draw();
        }
    });
    return QApplication::exec();
}
