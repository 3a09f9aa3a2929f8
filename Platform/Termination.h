#pragma once
#include <QObject>

// Gathers everything that ends the application from outside into one signal, so that there is one way down. Main thread
// only, one at a time in a process.
class Termination : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // The system wants the application to end: a signal of the process, or the end of the desktop session. May be
    // emitted again while the application is already on its way down.
    void terminationRequested();
};
