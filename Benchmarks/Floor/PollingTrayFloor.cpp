#include "Benchmarks/Floor/EmptyTray.h"
#include "Benchmarks/Floor/Poller.h"
#include <QApplication>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const EmptyTray tray(QUrl(QStringLiteral("qrc:/Veranox/PollingTrayFloor/Empty.qml")));
    const Poller poller;
    return QApplication::exec();
}
