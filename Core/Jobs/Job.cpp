#include "Core/Jobs/Job.h"
#include <QBasicTimer>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QThread>
#include <algorithm>

namespace jobs {

namespace {
thread_local std::optional<QString> t_threadAmbient;
thread_local std::optional<QString> *t_ambientSlot = nullptr; // the job's slot while a job runs
detail::JobCore *s_current = nullptr; // main thread only

std::optional<QString> &slot()
{
    return t_ambientSlot ? *t_ambientSlot : t_threadAmbient;
}
} // namespace

std::optional<QString> ambient()
{
    return slot();
}

AmbientScope::AmbientScope(std::optional<QString> text)
    : m_slot(&slot()),
      m_before(std::exchange(*m_slot, std::move(text)))
{
}
AmbientScope::~AmbientScope()
{
    *m_slot = std::move(m_before);
}

namespace detail {

// ---- Inbox
void Inbox::put(std::shared_ptr<Delivery> delivery)
{
    const std::lock_guard lock(m_mutex);
    m_mail.push_back(std::move(delivery));
    if (m_receiver && m_mail.size() == 1)
        QCoreApplication::postEvent(m_receiver, new QEvent(QEvent::User));
    m_arrived.notify_one();
}
std::vector<std::shared_ptr<Delivery>> Inbox::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_mail, {});
}
bool Inbox::waitForMail(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    return m_arrived.wait_for(lock, limit, [this] { return !m_mail.empty(); });
}
void Inbox::open(QObject *receiver)
{
    const std::lock_guard lock(m_mutex);
    m_receiver = receiver;
}
void Inbox::close()
{
    std::vector<std::shared_ptr<Delivery>> mail;
    const std::lock_guard lock(m_mutex);
    m_receiver = nullptr;
    mail.swap(m_mail);
}

// ---- JobCore
JobCore::JobCore(MainQueue &queue) : ambientSlot(ambient()), m_queue(queue) { }
JobCore::~JobCore()
{
    if (m_error && !m_seen) {
        try {
            std::rethrow_exception(m_error);
        } catch (const JobAbandoned &) {
        } catch (const std::exception &e) {
            qCritical("a job failed and nobody asked: %s", e.what());
        } catch (...) {
            qCritical("a job failed and nobody asked");
        }
    }
}
JobCore *JobCore::current() noexcept
{
    return s_current;
}

void JobCore::unref() noexcept
{
    if (--m_refs == 0)
        delete this;
}
void JobCore::start()
{
    m_phase = Phase::Active;
    m_resume = root();
    m_queue.ready(*this);
}
void JobCore::cancel()
{
    if (m_cancelled || over())
        return;
    const Ref keep(this);
    m_cancelled = true;
    const auto linked = children; // a copy: a child may end while it is cancelled
    for (JobCore *child : linked) {
        if (std::find(children.begin(), children.end(), child) != children.end())
            child->cancel();
    }
    if (m_wait)
        m_wait->jobCancelled();
}
void JobCore::abandon()
{
    if (over())
        return;
    const Ref keep(this);
    if (m_onStack) { // its owner dies inside of it: the frame goes at its next wait
        qWarning("a job destroys its own owner; use deleteLater()");
        m_phase = Phase::Abandoned;
        return;
    }
    end(Phase::Abandoned);
}
void JobCore::run()
{
    const Ref keep(this);
    JobCore *const outer = std::exchange(s_current, this);
    auto *const outerSlot = std::exchange(t_ambientSlot, &ambientSlot);
    m_onStack = true;
    m_next = std::exchange(m_resume, nullptr);
    while (m_next) // a step: from frame to frame until one waits
        std::exchange(m_next, nullptr).resume();
    m_onStack = false;
    t_ambientSlot = outerSlot;
    s_current = outer;
    if (m_phase == Phase::Abandoned)
        end(Phase::Abandoned);
    else if (root().done())
        end(Phase::Finished);
}
void JobCore::end(Phase how)
{
    m_phase = how;
    m_queue.forget(*this);
    if (how == Phase::Finished)
        m_error = takeResult();
    destroyFrame(); // its children go with it
    if (parent)
        std::erase(parent->children, this);
    parent = nullptr;
    for (Suspension *waiter : std::exchange(waiters, {}))
        waiter->wake();
    if (JobScope *const s = std::exchange(scope, nullptr))
        s->remove(*this); // last: it may drop the last reference but ours
}
void JobCore::rethrow()
{
    m_seen = true;
    std::rethrow_exception(m_error);
}

// ---- Suspension
void Suspension::suspend(JobCore &core, std::coroutine_handle<> at)
{
    m_job = &core;
    m_at = at;
    core.m_wait = this;
    if (core.m_cancelled)
        jobCancelled();
}
void Suspension::wake()
{
    if (!m_job)
        return;
    JobCore &core = *std::exchange(m_job, nullptr);
    core.m_wait = nullptr;
    core.m_resume = m_at;
    core.m_queue.ready(core);
}
Suspension::~Suspension()
{
    if (m_job)
        m_job->m_wait = nullptr;
}

} // namespace detail

// ---- JobScope
JobScope::~JobScope()
{
    m_closed = true;
    while (!m_jobs.empty()) {
        detail::JobCore *const core = m_jobs.back();
        if (core->onStack()) {
            core->abandon();
            core->scope = nullptr;
            m_jobs.pop_back();
            core->unref();
        } else {
            core->abandon(); // removes itself from m_jobs
        }
    }
}
void JobScope::add(detail::JobCore &core)
{
    if (m_closed) {
        core.abandon();
        return;
    }
    core.ref();
    core.scope = this;
    m_jobs.push_back(&core);
    core.start();
}
void JobScope::remove(detail::JobCore &core) noexcept
{
    std::erase(m_jobs, &core);
    core.unref();
}
void JobScope::cancelAll()
{
    const auto jobs = m_jobs;
    for (detail::JobCore *core : jobs)
        core->cancel();
}

// ---- MainQueue
class MainQueue::Receiver final : public QObject {
public:
    explicit Receiver(MainQueue &queue) : m_queue(queue) { }
    void again() { m_timer.start(0, this); }

protected:
    bool event(QEvent *e) override
    {
        if (e->type() == QEvent::Timer)
            m_timer.stop();
        else if (e->type() != QEvent::User)
            return QObject::event(e);
        m_queue.drain(true);
        return true;
    }

private:
    MainQueue &m_queue;
    QBasicTimer m_timer;
};

MainQueue::MainQueue(Clock &clock)
    : m_clock(clock),
      m_receiver(std::make_unique<Receiver>(*this)),
      m_inbox(std::make_shared<detail::Inbox>())
{
    m_inbox->open(m_receiver.get());
}
MainQueue::~MainQueue()
{
    m_inbox->close();
    Q_ASSERT_X(
        std::all_of(m_ready.begin(), m_ready.end(), [](auto *c) { return !c; }), "MainQueue", "a job outlives it");
}
void MainQueue::ready(detail::JobCore &core)
{
    Q_ASSERT_X(QThread::currentThread() == m_receiver->thread(), "MainQueue", "not the main thread");
    Q_ASSERT(core.queueSlots == 0);
    core.queueSlots = 1;
    m_ready.push_back(&core);
    if (!m_draining && !m_posted) {
        m_posted = true;
        QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User));
    }
}
void MainQueue::forget(detail::JobCore &core) noexcept
{
    if (std::exchange(core.queueSlots, 0))
        std::replace(m_ready.begin(), m_ready.end(), &core, static_cast<detail::JobCore *>(nullptr));
}
void MainQueue::drain(bool bounded)
{
    if (m_draining) // a nested event loop inside of a job: its jobs wait until it returns
        return;
    m_draining = true;
    m_posted = false;
    const QDeadlineTimer slice(bounded ? 4 : -1); // milliseconds of real time, then Qt gets its turn
    for (unsigned n = 1;; ++n) {
        for (const auto &delivery : m_inbox->take())
            delivery->deliver();
        if (m_ready.empty())
            break;
        detail::JobCore *const core = m_ready.front();
        m_ready.pop_front();
        if (core) {
            core->queueSlots = 0;
            core->run();
        }
        if (bounded && n % 64 == 0 && slice.hasExpired() && !m_ready.empty()) {
            m_posted = true;
            m_receiver->again();
            break;
        }
    }
    m_draining = false;
}
void MainQueue::settle()
{
    for (;;) {
        drain(false);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!m_ready.empty())
            continue;
        if (m_inbox->outstanding == 0)
            return;
        if (!m_inbox->waitForMail(std::chrono::seconds(10)))
            qFatal("a thread hop did not come back within 10 s");
    }
}

} // namespace jobs
