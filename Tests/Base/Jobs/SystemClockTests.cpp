// The one place where real time passes in these tests: the clock that turns it into wake-ups.
#include "Base/Jobs/Jobs.h"
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <gtest/gtest.h>

using namespace jobs;
using namespace std::chrono_literals;

namespace {
class Bell final : public Clock::Alarm {
public:
    explicit Bell(Clock &clock) : m_clock(clock) { }
    void set(Clock::Duration wait) { m_clock.arm(*this, m_due = m_clock.after(wait)); }
    bool rang() const { return m_rang.has_value(); }
    Clock::Duration lateness() const { return *m_rang - m_due; }

private:
    void ring() override { m_rang = m_clock.now(); }
    Clock &m_clock;
    Clock::Time m_due;
    std::optional<Clock::Time> m_rang;
};

// Counts every timer event of the thread.
class TimerEvents final : public QObject {
public:
    TimerEvents() { qApp->installEventFilter(this); }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
    int count = 0;
};

void runEventsUntil(const Bell &bell)
{
    while (!bell.rang())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}
} // namespace

TEST(SystemClock, RingsNeverEarlyAndOnceForEachDeadline)
{
    SystemClock clock;
    Bell first(clock);
    Bell second(clock);
    Bell far(clock);
    const TimerEvents events;
    far.set(1h);
    second.set(25ms);
    first.set(5ms);
    runEventsUntil(second);
    EXPECT_TRUE(first.rang());
    EXPECT_FALSE(far.rang());
    EXPECT_GE(first.lateness(), 0ns);
    EXPECT_GE(second.lateness(), 0ns);
    EXPECT_EQ(events.count, 2);
}

TEST(SystemClock, ADeadlineThatWasDroppedCostsNoWakeUp)
{
    SystemClock clock;
    Bell last(clock);
    last.set(20ms);
    const TimerEvents events;
    for (int request = 0; request < 50; ++request) { // limits of requests which were answered in time
        Bell limit(clock);
        limit.set(1ms);
    }
    runEventsUntil(last);
    EXPECT_EQ(events.count, 1);
}

TEST(SystemClock, AWaitLongerThanATimerCanCountIsStillArmed)
{
    SystemClock clock;
    Bell century(clock);
    century.set(24h * 36525);
    Bell soon(clock);
    soon.set(1ms);
    runEventsUntil(soon);
    EXPECT_TRUE(century.armed());
    EXPECT_FALSE(century.rang());
}

TEST(SystemClock, AJobSleepsOnItAndACancelCutsTheSleep)
{
    struct L {
        static Async<> go(Clock::Duration wait, Sleep *how) { *how = co_await sleep(wait); }
    };
    SystemClock clock;
    MainQueue queue(clock);
    JobScope jobs(queue);
    Sleep shortSleep = Sleep::cut;
    Sleep longSleep = Sleep::full;
    auto quick = jobs.start(L::go(5ms, &shortSleep));
    auto slow = jobs.start(L::go(1h, &longSleep));
    while (quick.running())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    slow.cancel();
    while (slow.running())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(shortSleep, Sleep::full);
    EXPECT_EQ(longSleep, Sleep::cut);
}
