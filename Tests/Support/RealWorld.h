// Real time and a real event loop, for tests whose other side is a process or a socket. What is a rule about time
// belongs into virtual time; here time only bounds the patience of the test.
#pragma once
#include "Base/Jobs/Jobs.h"
#include "Base/Jobs/SystemClock.h"
#include <QEventLoop>
#include <QTimer>

struct RealWorld {
    jobs::SystemClock clock;
    jobs::MainQueue queue{clock};

    // Runs the event loop until the condition holds; false when it did not within the limit.
    template <class Condition>
    bool runUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(30))
    {
        bool late = false;
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, &timer, [&late] { late = true; });
        timer.start(limit);
        QEventLoop loop;
        while (!condition() && !late)
            loop.processEvents(QEventLoop::WaitForMoreEvents);
        return condition();
    }

    double seconds() const { return std::chrono::duration<double>(clock.now().time_since_epoch()).count(); }
};
