#include "Base/Jobs/JobCore.h"
#include "Base/Jobs/JobScope.h"
#include <QtGlobal>
#include <algorithm>

namespace jobs::detail {

namespace {
thread_local JobCore *t_current = nullptr;

void reportUnseen(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const JobAbandoned &) {
        return; // the ordinary end of a job whose partner is gone
    } catch (const std::exception &e) {
        qCritical("a job failed and nobody asked: %s", e.what());
    } catch (...) {
        qCritical("a job failed and nobody asked");
    }
}
} // namespace

JobCore::JobCore(MainQueue &queue) : m_queue(queue), m_ambient(ambient()) { }

JobCore::~JobCore()
{
    if (m_error && !m_errorSeen)
        reportUnseen(m_error);
}

JobCore *JobCore::current() noexcept
{
    return t_current;
}

void JobCore::unref() noexcept
{
    if (--m_refs == 0)
        delete this;
}

void JobCore::start()
{
    m_phase = Phase::active;
    m_resume = root();
    m_queue.ready(*this);
}

void JobCore::adopt(JobCore &child)
{
    child.m_parent = this;
    m_children.push_back(&child);
    child.start();
    if (m_cancelled)
        child.cancel();
}

void JobCore::cancel()
{
    if (m_cancelled || over())
        return;
    const Ref keep(this);
    m_cancelled = true;
    const auto linked = m_children; // a copy: a child may end while another is cancelled
    for (JobCore *const child : linked) {
        if (std::ranges::find(m_children, child) != m_children.end())
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
        m_phase = Phase::abandoned;
        return;
    }
    end(Phase::abandoned);
}

void JobCore::run()
{
    const Ref keep(this);
    JobCore *const outer = std::exchange(t_current, this);
    AmbientSlot *const outerSlot = exchangeAmbientSlot(&m_ambient);
    m_onStack = true;
    m_next = std::exchange(m_resume, nullptr);
    while (m_next) // from frame to frame until one waits
        std::exchange(m_next, nullptr).resume();
    m_onStack = false;
    exchangeAmbientSlot(outerSlot);
    t_current = outer;
    if (m_phase == Phase::abandoned)
        end(Phase::abandoned);
    else if (root().done())
        end(Phase::finished);
}

void JobCore::end(Phase how)
{
    m_phase = how;
    m_queue.forget(*this);
    if (how == Phase::finished)
        m_error = takeResult();
    destroyFrame(); // its children go with it
    leaveFamily();
    for (Suspension *const waiter : std::exchange(waiters, {}))
        waiter->wake();
    if (JobScope *const owner = std::exchange(scope, nullptr))
        owner->remove(*this); // last: it may drop the last reference but that of our caller
}

void JobCore::leaveFamily()
{
    if (m_parent)
        std::erase(m_parent->m_children, this);
    m_parent = nullptr;
    for (JobCore *const child : std::exchange(m_children, {})) // one whose variable was moved out of the frame
        child->m_parent = nullptr;
}

void JobCore::rethrow()
{
    m_errorSeen = true;
    std::rethrow_exception(m_error);
}

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

} // namespace jobs::detail
