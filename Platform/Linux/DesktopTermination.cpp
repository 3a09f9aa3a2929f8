#include "Platform/Linux/DesktopTermination.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace {

// Launch at login is the application's own setting; a session manager must not start it as well.
void declineRestart(QSessionManager &manager)
{
    manager.setRestartHint(QSessionManager::RestartNever);
}

} // namespace

DesktopTermination::DesktopTermination(QObject *parent) : Termination(parent)
{
    connect(&m_signals, &UnixSignals::received, this, &Termination::terminationRequested);

    // Not at saveStateRequest: session managers send that to every program that has just started.
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, declineRestart, Qt::DirectConnection);
    connect(
        qGuiApp, &QGuiApplication::commitDataRequest, this,
        [this](QSessionManager &manager) {
            declineRestart(manager);
            Q_EMIT terminationRequested();
        },
        Qt::DirectConnection);
}
