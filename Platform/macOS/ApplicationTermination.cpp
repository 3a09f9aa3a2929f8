#include "Platform/macOS/ApplicationTermination.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

ApplicationTermination::ApplicationTermination(QObject *parent) : Termination(parent)
{
    connect(&m_signals, &UnixSignals::received, this, &Termination::terminationRequested);
    QCoreApplication::instance()->installEventFilter(this);
}

bool ApplicationTermination::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return false;
    if (std::exchange(m_requested, true))
        return false;
    event->ignore();
    Q_EMIT terminationRequested();
    return true;
}
