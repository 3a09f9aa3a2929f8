// The running state of one job, whatever its result type, and the base of every place where a job waits.
#pragma once
#include "Base/Jobs/Ambient.h"
#include "Base/Jobs/MainQueue.h"
#include <coroutine>
#include <exception>
#include <utility>
#include <vector>

namespace jobs {

class JobScope;

// What awaiting a job throws whose owner is gone. Ends the awaiting job quietly unless it is caught.
class JobAbandoned : public std::exception {
public:
    const char *what() const noexcept override { return "the awaited job was abandoned with its owner"; }
};

namespace detail {

class Suspension;

// A job is one logical thread: a chain of frames and one place where it waits. Main thread only, so the references are
// counted without atomics.
class JobCore {
public:
    JobCore(const JobCore &) = delete;
    JobCore &operator=(const JobCore &) = delete;
    // The job that runs in this thread, or null.
    static JobCore *current() noexcept;

    void ref() noexcept { ++m_refs; }
    void unref() noexcept;
    void start(); // queues the first step
    void cancel();
    void abandon(); // its owner goes: destroys the frames where they wait
    void run(); // one step, from one wait to the next
    void continueWith(std::coroutine_handle<> frame) noexcept { m_next = frame; }
    void adopt(JobCore &child);

    MainQueue &queue() const noexcept { return m_queue; }
    bool cancelled() const noexcept { return m_cancelled; }
    bool finished() const noexcept { return m_phase == Phase::finished; }
    bool abandoned() const noexcept { return m_phase == Phase::abandoned; }
    bool over() const noexcept { return finished() || abandoned(); }
    bool onStack() const noexcept { return m_onStack; }
    bool failed() const noexcept { return m_error != nullptr; }
    [[noreturn]] void rethrow();

    std::vector<Suspension *> waiters; // jobs that wait for the end of this one; first come, first woken
    JobScope *scope = nullptr;
    bool queued = false; // whether the ready queue holds this job

protected:
    explicit JobCore(MainQueue &queue);
    virtual ~JobCore();
    virtual std::coroutine_handle<> root() const noexcept = 0;
    virtual std::exception_ptr takeResult() = 0; // from the promise to the state
    virtual void destroyFrame() noexcept = 0;

private:
    friend class Suspension;
    enum class Phase : unsigned char { unstarted, active, finished, abandoned };
    void end(Phase how);
    void leaveFamily();
    MainQueue &m_queue;
    AmbientSlot m_ambient;
    JobCore *m_parent = nullptr;
    std::vector<JobCore *> m_children; // cancelled with this job
    std::coroutine_handle<> m_next; // the frame that runs next in this step
    std::coroutine_handle<> m_resume; // the frame that begins the next step
    Suspension *m_wait = nullptr; // where it waits
    std::exception_ptr m_error;
    int m_refs = 0;
    Phase m_phase = Phase::unstarted;
    bool m_cancelled = false;
    bool m_onStack = false;
    bool m_errorSeen = false;
};

// Counted reference to a JobCore or to a class derived from it.
template <class C> class Ref {
public:
    Ref() = default;
    explicit Ref(C *core) noexcept : m_core(core)
    {
        if (m_core)
            m_core->ref();
    }
    Ref(const Ref &other) noexcept : Ref(other.m_core) { }
    Ref(Ref &&other) noexcept : m_core(std::exchange(other.m_core, nullptr)) { }
    Ref &operator=(Ref other) noexcept
    {
        std::swap(m_core, other.m_core);
        return *this;
    }
    ~Ref()
    {
        if (m_core)
            m_core->unref();
    }
    C *get() const noexcept { return m_core; }
    C *operator->() const noexcept { return m_core; }
    explicit operator bool() const noexcept { return m_core != nullptr; }

private:
    C *m_core = nullptr;
};

// Base of every awaiter at which a job gives up the thread. Unhooks itself when its frame is destroyed.
class Suspension {
public:
    Suspension(const Suspension &) = delete;
    Suspension &operator=(const Suspension &) = delete;
    // The job goes on, from the queue. A second wake does nothing.
    void wake();

protected:
    Suspension() = default;
    virtual ~Suspension();
    void suspend(JobCore &core, std::coroutine_handle<> at);

private:
    friend class JobCore;
    // The job that waits here was cancelled, perhaps before it came here.
    virtual void jobCancelled() { }
    JobCore *m_job = nullptr;
    std::coroutine_handle<> m_at;
};

} // namespace detail
} // namespace jobs
