#include "Base/Jobs/MainQueue.h"
#include "Base/Jobs/JobCore.h"
#include "Base/Jobs/ThreadHandOver.h"
#include <QBasicTimer>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QThread>
#include <algorithm>
#include <utility>

namespace jobs {

namespace {
using namespace std::chrono_literals;
constexpr auto slice = 4ms; // a quarter of a frame at 60 Hz: input and painting come through between two slices
constexpr unsigned stepsBetweenLooks = 64; // reading the time costs as much as a step
constexpr auto longestHop = 10s; // a thread that takes longer hangs
} // namespace

class MainQueue::Receiver final : public QObject {
public:
    explicit Receiver(MainQueue &queue) : m_queue(queue) { }
    // A timer and not an event: Qt handles posted events before it looks at input and sockets.
    void comeBackSoon() { m_timer.start(0, this); }

protected:
    bool event(QEvent *event) override
    {
        detail::takeOver(event);
        if (event->type() == QEvent::Timer)
            m_timer.stop();
        else if (event->type() != QEvent::User)
            return QObject::event(event);
        else if (m_timer.isActive()) // mail between two slices: it waits for the next, and Qt comes first
            return true;
        m_queue.drain(Slice::bounded);
        return true;
    }

private:
    MainQueue &m_queue;
    QBasicTimer m_timer;
};

MainQueue::MainQueue(Clock &clock)
    : m_clock(clock),
      m_receiver(std::make_unique<Receiver>(*this)),
      m_inbox(std::make_shared<detail::Inbox>(*m_receiver))
{
}

MainQueue::~MainQueue()
{
    m_inbox->close();
    Q_ASSERT_X(std::ranges::all_of(m_ready, [](auto *core) { return !core; }), "MainQueue", "a job outlives its queue");
}

void MainQueue::ready(detail::JobCore &core)
{
    Q_ASSERT_X(QThread::currentThread() == m_receiver->thread(), "MainQueue", "not the main thread");
    Q_ASSERT(!core.queued);
    core.queued = true;
    m_ready.push_back(&core);
    if (!m_draining && !m_posted) {
        m_posted = true;
        QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User));
    }
}

void MainQueue::forget(detail::JobCore &core) noexcept
{
    if (std::exchange(core.queued, false))
        std::ranges::replace(m_ready, &core, nullptr);
}

void MainQueue::drain(Slice length)
{
    if (m_draining) // a nested event loop inside of a job: its jobs wait until it returns
        return;
    m_draining = true;
    m_posted = false;
    const QDeadlineTimer end(
        length == Slice::bounded ? QDeadlineTimer(slice) : QDeadlineTimer(QDeadlineTimer::Forever));
    for (unsigned steps = 1;; ++steps) {
        deliverMail();
        if (m_ready.empty())
            break;
        runFirst();
        if (steps % stepsBetweenLooks == 0 && end.hasExpired() && !m_ready.empty()) {
            m_posted = true;
            m_receiver->comeBackSoon();
            break;
        }
    }
    m_draining = false;
}

void MainQueue::deliverMail()
{
    for (const auto &delivery : m_inbox->take())
        delivery->deliver();
}

void MainQueue::runFirst()
{
    detail::JobCore *const core = m_ready.front();
    m_ready.pop_front();
    if (!core)
        return;
    core->queued = false;
    core->run();
}

void MainQueue::settle()
{
    for (;;) {
        drain(Slice::whole);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!m_ready.empty())
            continue;
        if (m_inbox->outstanding == 0)
            return;
        if (!m_inbox->waitForMail(longestHop))
            qFatal("work in another thread did not come back within 10 s");
    }
}

} // namespace jobs
