#include "Benchmarks/Floor/EmptyTray.h"
#include <QApplication>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const EmptyTray tray(QUrl(QStringLiteral("qrc:/Veranox/TrayFloor/Empty.qml")));
    return QApplication::exec();
}
