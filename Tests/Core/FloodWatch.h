// What a flood costs this program: memory, and the main thread's time for everything else.
#pragma once
#include "Tests/Support/PeakMemory.h"
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <ctime>

class FloodWatch {
public:
    // From here on a timer that wants to ring every 5 ms measures the work that keeps it from it.
    FloodWatch()
    {
        QObject::connect(&m_heartbeat, &QTimer::timeout, &m_heartbeat, [this] {
            m_longestWork = std::max(m_longestWork, work() - m_atBeat);
            m_atBeat = work();
        });
        m_heartbeat.start(5);
        m_memory.begin();
    }

    // Milliseconds.
    double longestWork() const { return m_longestWork; }

    // Bytes: the most memory that this program had since the watch began, beyond what it had then.
    qint64 growth() const { return m_memory.growth(); }

private:
    // What this thread has worked so far: unlike time it does not count what other programs do.
    static double work()
    {
        timespec used{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
        return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
    }

    QTimer m_heartbeat;
    double m_atBeat = work();
    double m_longestWork = 0;
    PeakMemory m_memory;
};
