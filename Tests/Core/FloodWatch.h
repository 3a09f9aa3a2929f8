// What a flood costs this program: memory, and the main thread's time for everything else.
#pragma once
#include <QFile>
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>

class FloodWatch {
public:
    static constexpr qint64 kilobyte = 1024;

    // From here on a timer that wants to ring every 5 ms measures the work that keeps it from it.
    FloodWatch()
    {
        QObject::connect(&m_heartbeat, &QTimer::timeout, &m_heartbeat, [this] {
            m_longestWork = std::max(m_longestWork, work() - m_atBeat);
            m_atBeat = work();
        });
        m_heartbeat.start(5);
    }

    // Milliseconds.
    double longestWork() const { return m_longestWork; }

    // Bytes by which the most memory that this program ever had has grown since the watch began.
    qint64 growth() const { return peakMemory() - m_memoryBefore; }

private:
    static qint64 peakMemory()
    {
        QFile status(QStringLiteral("/proc/self/status"));
        EXPECT_TRUE(status.open(QFile::ReadOnly));
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).chopped(2).trimmed().toLongLong() * kilobyte;
        }
        ADD_FAILURE() << "no peak of memory";
        return 0;
    }

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
    qint64 m_memoryBefore = peakMemory();
};
