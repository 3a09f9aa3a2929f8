#pragma once
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <chrono>
#include <concepts>

// Runs the event loop until the condition holds; false when that takes longer than the deadline. For what other
// processes do; what depends on a clock of our own belongs into virtual time.
inline bool eventually(std::predicate auto condition, std::chrono::milliseconds deadline = std::chrono::seconds(20))
{
    const QDeadlineTimer timer(deadline);
    while (!condition()) {
        if (timer.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QThread::msleep(2);
    }
    return true;
}
