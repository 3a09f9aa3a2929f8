#pragma once
#include <QQmlApplicationEngine>
#include <QSystemTrayIcon>

// A tray icon and a Qt Quick engine with one window that is never shown. Needs a QApplication. Main thread only.
class EmptyTray {
public:
    // moduleFile: the resource path of the program's copy of Empty.qml. Ends the process when it cannot be loaded.
    explicit EmptyTray(const QUrl &moduleFile);

private:
    QQmlApplicationEngine m_engine;
    QSystemTrayIcon m_icon;
};
