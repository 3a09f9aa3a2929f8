// Draws every screen in each of its states into PNG files of the folder that the first argument names, light and dark.
// Ends with 1 when Qt warned of anything meanwhile.
#include "Tests/Gallery/Gallery.h"
#include "Tests/Gallery/Scenes.h"
#include <QApplication>
#include <QDir>
#include <QFont>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int warnings = 0;

void count(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    if (type != QtDebugMsg && type != QtInfoMsg && !text.startsWith(u"This plugin does not support"))
        ++warnings;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QString folder = QApplication::arguments().value(1);
    if (folder.isEmpty() || !QDir().mkpath(folder)) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    QFont font(u"Inter"_s);
    QApplication::setFont(font);
    qInstallMessageHandler(count);
    Gallery gallery(folder);
    for (const bool dark : {false, true}) {
        gallery.setDark(dark);
        drawControls(gallery);
        drawPopover(gallery);
        drawQuitConfirmation(gallery);
    }
    return warnings == 0 ? 0 : 1;
}
