// Measures how long the main thread's event loop was kept from turning, and turns it for tests that wait for threads.
#pragma once
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <utility>

class MainThreadHeartbeat {
public:
    MainThreadHeartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { beat(); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1);
    }

    // Turns the event loop until the condition holds; false when that takes more than 20 s.
    bool turnLoopUntil(const std::function<bool()> &condition)
    {
        QElapsedTimer waiting;
        waiting.start();
        m_sinceBeat.start();
        m_waited = waitedForProcessor();
        while (!condition()) {
            if (waiting.hasExpired(20'000))
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

    // The longest time between two beats while the loop was turned here, in milliseconds, less what this thread waited
    // for a processor that others used.
    qint64 longestPause() const { return m_longestPause; }

private:
    void beat()
    {
        const qint64 waitedBefore = std::exchange(m_waited, waitedForProcessor());
        if (m_sinceBeat.isValid())
            m_longestPause = std::max(m_longestPause, m_sinceBeat.restart() - (m_waited - waitedBefore));
    }
    // Milliseconds since the thread began. Linux; elsewhere none.
    static qint64 waitedForProcessor()
    {
        QFile statistics(QStringLiteral("/proc/thread-self/schedstat")); // nanoseconds running, waiting, and a count
        if (!statistics.open(QIODevice::ReadOnly))
            return 0;
        return statistics.readAll().split(' ').value(1).toLongLong() / 1'000'000;
    }
    QTimer m_timer;
    QElapsedTimer m_sinceBeat;
    qint64 m_waited = 0;
    qint64 m_longestPause = 0;
};
