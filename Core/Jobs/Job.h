// Jobs: coroutines of the main thread. See the rules at the end of docs/coroutines before writing one.
//
//   Async<T>   what a coroutine returns. Lazy: runs when it is awaited, as a part of the awaiting job.
//   JobScope   a member (the LAST one) of the object that owns the jobs; start() makes an Async a job.
//   Job<T>     shared handle of a started job: cancel it, wait for it from any number of jobs.
//   Child<T>   a job that lives in a variable of another job: inherits its cancellation, dies with it.
//   Completion one value that arrives later: from a callback, a thread, a serial object.
#pragma once
#include "Core/Jobs/MainQueue.h"
#include <QString>
#include <QStringView>
#include <concepts>
#include <coroutine>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string_view>
#include <type_traits>
#include <utility>

namespace jobs {

template <class T = void> class Async;
template <class T = void> class Job;
template <class T = void> class Child;
class JobScope;

// What awaiting a job gives whose owner is gone. Ends the awaiting job quietly unless it is caught.
class JobAbandoned : public std::exception {
public:
    const char *what() const noexcept override { return "the awaited job was abandoned with its owner"; }
};

enum class Sleep { Full, Cut }; // Cut: the job was cancelled; it may look and go on

// ---- ambient text (correlation id): one slot for each job, and one for each thread outside of jobs
std::optional<QString> ambient();
class AmbientScope { // sets the ambient text of the job (or thread) at hand for the life of this variable
public:
    explicit AmbientScope(std::optional<QString> text);
    ~AmbientScope();
    AmbientScope(const AmbientScope &) = delete;
    AmbientScope &operator=(const AmbientScope &) = delete;

private:
    std::optional<QString> *m_slot;
    std::optional<QString> m_before;
};

namespace detail {

template <class T> using Stored = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

class Suspension;

// The running state of one job, whatever its result type. Main thread only; counted without atomics.
class JobCore {
public:
    JobCore(const JobCore &) = delete;
    JobCore &operator=(const JobCore &) = delete;
    static JobCore *current() noexcept;

    void ref() noexcept { ++m_refs; }
    void unref() noexcept;
    void start(); // queues the first step
    void cancel();
    void abandon(); // its owner goes: destroys the frames where they wait
    void run(); // one step: from one wait to the next (the queue calls it)
    void become(std::coroutine_handle<> next) noexcept { m_next = next; }

    MainQueue &queue() const noexcept { return m_queue; }
    bool cancelled() const noexcept { return m_cancelled; }
    bool finished() const noexcept { return m_phase == Phase::Finished; }
    bool abandoned() const noexcept { return m_phase == Phase::Abandoned; }
    bool over() const noexcept { return finished() || abandoned(); }
    bool onStack() const noexcept { return m_onStack; }
    [[noreturn]] void rethrow();
    bool failed() const noexcept { return m_error != nullptr; }

    std::optional<QString> ambientSlot;
    JobCore *parent = nullptr; // a child is cancelled with its parent
    std::vector<JobCore *> children;
    std::vector<Suspension *> waiters; // jobs that wait for the end of this one, first come first woken
    JobScope *scope = nullptr;
    std::size_t queueSlots = 0; // how often the ready queue holds this job (0 or 1)

protected:
    explicit JobCore(MainQueue &queue);
    virtual ~JobCore();
    virtual std::coroutine_handle<> root() const noexcept = 0;
    virtual std::exception_ptr takeResult() = 0; // from the promise to the state
    virtual void destroyFrame() noexcept = 0;

private:
    friend class Suspension;
    enum class Phase : unsigned char { New, Active, Finished, Abandoned };
    void end(Phase how);
    MainQueue &m_queue;
    std::coroutine_handle<> m_next; // the frame that runs next in this step
    std::coroutine_handle<> m_resume; // the frame that begins the next step
    Suspension *m_wait = nullptr; // where it waits
    std::exception_ptr m_error;
    int m_refs = 0;
    Phase m_phase = Phase::New;
    bool m_cancelled = false;
    bool m_onStack = false;
    bool m_seen = false; // somebody looked at the error
};

template <class C> class Ref { // intrusive pointer
public:
    Ref() = default;
    explicit Ref(C *c) noexcept : m_c(c)
    {
        if (m_c)
            m_c->ref();
    }
    Ref(const Ref &o) noexcept : Ref(o.m_c) { }
    Ref(Ref &&o) noexcept : m_c(std::exchange(o.m_c, nullptr)) { }
    Ref &operator=(Ref o) noexcept
    {
        std::swap(m_c, o.m_c);
        return *this;
    }
    ~Ref()
    {
        if (m_c)
            m_c->unref();
    }
    C *get() const noexcept { return m_c; }
    C *operator->() const noexcept { return m_c; }
    explicit operator bool() const noexcept { return m_c != nullptr; }

private:
    C *m_c = nullptr;
};

// Base of every awaiter at which a job gives up the thread. Unhooks itself when its frame is destroyed.
class Suspension {
public:
    Suspension(const Suspension &) = delete;
    Suspension &operator=(const Suspension &) = delete;
    void wake(); // the job goes on, from the queue; a second wake does nothing

protected:
    Suspension() = default;
    virtual ~Suspension();
    void suspend(JobCore &core, std::coroutine_handle<> at);
    JobCore *job() const noexcept { return m_job; }

private:
    friend class JobCore;
    virtual void jobCancelled() { } // the job that waits here was cancelled (perhaps before it came here)
    JobCore *m_job = nullptr;
    std::coroutine_handle<> m_at;
};

struct PromiseBase {
    JobCore *core = nullptr;
    std::coroutine_handle<> continuation; // null for the root of a job
    std::exception_ptr error;

    struct Final {
        bool await_ready() const noexcept { return false; }
        template <class P> void await_suspend(std::coroutine_handle<P> self) noexcept
        {
            PromiseBase &p = self.promise();
            p.core->become(p.continuation); // no symmetric transfer: g++ overflows the stack with it at -O0
        }
        void await_resume() const noexcept { }
    };
    std::suspend_always initial_suspend() const noexcept { return {}; }
    Final final_suspend() const noexcept { return {}; }
    void unhandled_exception() noexcept { error = std::current_exception(); }
};

template <class T> struct Promise : PromiseBase {
    std::optional<T> value;
    Async<T> get_return_object() noexcept;
    template <class U>
        requires std::convertible_to<U, T>
    void return_value(U &&v)
    {
        value.emplace(std::forward<U>(v));
    }
    T take() { return std::move(*value); }
};
template <> struct Promise<void> : PromiseBase {
    Async<void> get_return_object() noexcept;
    void return_void() const noexcept { }
    std::monostate take() const noexcept { return {}; }
};
template <class P>
concept JobPromise = std::derived_from<P, PromiseBase>;

// ---- what a coroutine may take as parameters, checked when it is compiled
template <class A> struct IsView : std::false_type { };
template <> struct IsView<QStringView> : std::true_type { };
template <> struct IsView<QLatin1StringView> : std::true_type { };
template <> struct IsView<QAnyStringView> : std::true_type { };
template <> struct IsView<QByteArrayView> : std::true_type { };
template <class C, class R> struct IsView<std::basic_string_view<C, R>> : std::true_type { };
template <class T, std::size_t N> struct IsView<std::span<T, N>> : std::true_type { };
template <class A>
concept CallableClass = std::is_class_v<A> && requires { &A::operator(); };

template <bool IsFirst, class A> constexpr void checkParameter()
{
    using V = std::remove_cvref_t<A>;
    static_assert(!IsView<V>::value, "a coroutine takes text and ranges by value: a view dangles at the first wait");
    if constexpr (std::is_reference_v<A>) {
        static_assert(IsFirst && std::is_lvalue_reference_v<A>,
            "a coroutine takes its parameters by value: a reference dangles at the first wait");
        // the first may be the object of a member function
        static_assert(!CallableClass<V>,
            "a lambda is never a coroutine: its closure dies before the frame; "
            "write a static function and pass what it needs");
        if constexpr (!CallableClass<V>)
            static_assert(!std::is_copy_constructible_v<V>,
                "a coroutine takes values by value, and only objects with an identity have member coroutines");
    } else {
        static_assert(!std::is_aggregate_v<V> || std::is_trivially_destructible_v<V> || !std::is_class_v<V>,
            "g++ 12 destroys an aggregate temporary in a co_await expression twice: give the type a constructor");
    }
}
template <class First, class... Rest> constexpr bool parametersOk()
{
    checkParameter<true, First>();
    (checkParameter<false, Rest>(), ...);
    return true;
}
} // namespace detail

// ---- Async<T>
template <class T> class [[nodiscard("an Async does nothing until it is awaited or started")]] Async {
public:
    using promise_type = detail::Promise<T>;
    using Handle = std::coroutine_handle<promise_type>;
    explicit Async(Handle h) noexcept : m_frame(h) { }
    Async(Async &&o) noexcept : m_frame(std::exchange(o.m_frame, nullptr)) { }
    Async &operator=(Async &&) = delete;
    ~Async()
    {
        if (m_frame)
            m_frame.destroy();
    }

    class Awaiter {
    public:
        explicit Awaiter(Handle h) noexcept : m_child(h) { }
        bool await_ready() const noexcept { return false; }
        template <detail::JobPromise P> void await_suspend(std::coroutine_handle<P> parent) noexcept
        {
            detail::PromiseBase &child = m_child.promise();
            child.core = parent.promise().core;
            child.continuation = parent;
            child.core->become(m_child);
        }
        T await_resume()
        {
            if (m_child.promise().error)
                std::rethrow_exception(std::move(m_child.promise().error));
            if constexpr (!std::is_void_v<T>)
                return m_child.promise().take();
        }

    private:
        Handle m_child;
    };
    Awaiter operator co_await() && noexcept { return Awaiter(m_frame); }

private:
    friend class JobScope;
    template <class U> friend Child<U> fork(Async<U>);
    Handle release() noexcept { return std::exchange(m_frame, nullptr); }
    Handle m_frame;
};

template <class T> Async<T> detail::Promise<T>::get_return_object() noexcept
{
    return Async<T>(std::coroutine_handle<Promise>::from_promise(*this));
}
inline Async<void> detail::Promise<void>::get_return_object() noexcept
{
    return Async<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

namespace detail {
template <class T> class JobState final : public JobCore {
public:
    using Handle = std::coroutine_handle<Promise<T>>;
    JobState(MainQueue &queue, Handle frame) : JobCore(queue), m_frame(frame)
    {
        if (m_frame)
            m_frame.promise().core = this;
    }
    ~JobState() override { destroyFrame(); }

    const Stored<T> &value() { return *m_value; }
    Stored<T> takeValue() { return std::move(*m_value); }

private:
    std::coroutine_handle<> root() const noexcept override { return m_frame; }
    std::exception_ptr takeResult() override
    {
        auto &promise = m_frame.promise();
        if (!promise.error)
            m_value.emplace(promise.take());
        return std::move(promise.error);
    }
    void destroyFrame() noexcept override
    {
        if (const Handle h = std::exchange(m_frame, nullptr))
            h.destroy();
    }
    Handle m_frame;
    std::optional<Stored<T>> m_value;
};

template <class T, bool Move> class JoinAwaiter final : public Suspension {
public:
    explicit JoinAwaiter(Ref<JobState<T>> target) : m_target(std::move(target)) { }
    ~JoinAwaiter() override { std::erase(m_target->waiters, this); }
    bool await_ready() const noexcept { return m_target->over(); }
    template <JobPromise P> void await_suspend(std::coroutine_handle<P> h)
    {
        Q_ASSERT_X(h.promise().core != m_target.get(), "co_await", "a job waits for itself");
        m_target->waiters.push_back(this);
        suspend(*h.promise().core, h);
    }
    T await_resume()
    {
        if (m_target->abandoned())
            throw JobAbandoned();
        if (m_target->failed())
            m_target->rethrow();
        if constexpr (!std::is_void_v<T>) {
            if constexpr (Move)
                return m_target->takeValue();
            else
                return m_target->value();
        }
    }

private:
    Ref<JobState<T>> m_target;
};
} // namespace detail

// ---- Job<T>: co_await gives a copy of the result to every waiter
template <class T> class Job {
public:
    Job() = default;
    explicit operator bool() const noexcept { return bool(m_state); }
    bool running() const noexcept { return m_state && !m_state->over(); }
    bool finished() const noexcept { return m_state && m_state->finished(); }
    bool abandoned() const noexcept { return m_state && m_state->abandoned(); }
    bool cancelRequested() const noexcept { return m_state && m_state->cancelled(); }
    void cancel() const
    {
        if (m_state)
            m_state->cancel();
    }
    detail::JoinAwaiter<T, false> operator co_await() const
    {
        Q_ASSERT_X(m_state, "co_await", "empty Job");
        return detail::JoinAwaiter<T, false>(m_state);
    }

private:
    friend class JobScope;
    explicit Job(detail::Ref<detail::JobState<T>> state) : m_state(std::move(state)) { }
    detail::Ref<detail::JobState<T>> m_state;
};

// ---- Child<T>: lives in a variable of the parent job; co_await moves the result out
template <class T> class [[nodiscard("a Child that is not kept is destroyed at once")]] Child {
public:
    Child(Child &&) noexcept = default;
    Child &operator=(Child &&) = delete;
    ~Child()
    {
        if (m_state)
            m_state->abandon();
    }
    bool running() const noexcept { return !m_state->over(); }
    void cancel() { m_state->cancel(); }
    detail::JobCore &core() const noexcept { return *m_state.get(); }
    detail::JoinAwaiter<T, true> operator co_await() & { return detail::JoinAwaiter<T, true>(m_state); }
    void operator co_await() && = delete; // keep it in a variable

private:
    template <class U> friend Child<U> fork(Async<U>);
    explicit Child(detail::Ref<detail::JobState<T>> state) : m_state(std::move(state)) { }
    detail::Ref<detail::JobState<T>> m_state;
};

// Starts body beside the job that calls this. It begins when that job next waits.
template <class T> Child<T> fork(Async<T> body)
{
    auto *parent = detail::JobCore::current();
    Q_ASSERT_X(parent, "fork", "called outside of a job");
    detail::Ref<detail::JobState<T>> state(new detail::JobState<T>(parent->queue(), body.release()));
    state->parent = parent;
    parent->children.push_back(state.get());
    state->start();
    if (parent->cancelled())
        state->cancel();
    return Child<T>(std::move(state));
}

// ---- JobScope: the weak tie between jobs and their owner. Make it the last member, so that it dies first:
// its destructor destroys the frames of all its jobs where they wait, and none of them ever runs again.
class JobScope {
public:
    explicit JobScope(MainQueue &queue) : m_queue(queue) { }
    ~JobScope();
    JobScope(const JobScope &) = delete;
    JobScope &operator=(const JobScope &) = delete;

    // Queues body as a job of its own; it does not run before the caller gives up the thread.
    template <class T> Job<T> start(Async<T> body)
    {
        detail::Ref<detail::JobState<T>> state(new detail::JobState<T>(m_queue, body.release()));
        add(*state.get());
        return Job<T>(std::move(state));
    }
    void cancelAll();
    std::size_t running() const noexcept { return m_jobs.size(); }
    MainQueue &queue() const noexcept { return m_queue; }

private:
    friend class detail::JobCore;
    void add(detail::JobCore &core);
    void remove(detail::JobCore &core) noexcept;
    MainQueue &m_queue;
    std::vector<detail::JobCore *> m_jobs;
    bool m_closed = false;
};

// ---- what a job can ask about itself, also from plain functions that it calls
namespace this_job {
inline bool cancelled()
{
    const auto *j = detail::JobCore::current();
    return j && j->cancelled();
}
inline Clock &clock()
{
    return detail::JobCore::current()->queue().clock();
}
} // namespace this_job

// ---- waits
namespace detail {
class SleepAwaiter final : public Suspension, private Clock::Alarm {
public:
    explicit SleepAwaiter(Clock::Duration d) : m_duration(d) { }
    bool await_ready() const noexcept { return false; }
    template <JobPromise P> void await_suspend(std::coroutine_handle<P> h)
    {
        JobCore &core = *h.promise().core;
        Clock &clock = core.queue().clock();
        if (!core.cancelled())
            clock.arm(*this, clock.now() + m_duration);
        suspend(core, h);
    }
    Sleep await_resume() const noexcept { return m_cut ? Sleep::Cut : Sleep::Full; }

private:
    void ring() override { wake(); }
    void jobCancelled() override
    {
        m_cut = true;
        wake();
    }
    Clock::Duration m_duration;
    bool m_cut = false;
};
class YieldAwaiter final : public Suspension {
public:
    bool await_ready() const noexcept { return false; }
    template <JobPromise P> void await_suspend(std::coroutine_handle<P> h)
    {
        suspend(*h.promise().core, h);
        wake();
    }
    void await_resume() const noexcept { }
};
} // namespace detail

inline detail::SleepAwaiter sleep(Clock::Duration d)
{
    return detail::SleepAwaiter(d);
}
inline detail::YieldAwaiter yield()
{
    return {};
}

// Cancels a child unless this variable dies first: a time limit.
class CancelAfter final : private Clock::Alarm {
public:
    template <class T> CancelAfter(Child<T> &child, Clock::Duration d) : m_target(&child.core())
    {
        Clock &clock = m_target->queue().clock();
        clock.arm(*this, clock.now() + d);
    }
    bool expired() const noexcept { return m_expired; }

private:
    void ring() override
    {
        m_expired = true;
        m_target->cancel();
    }
    detail::Ref<detail::JobCore> m_target;
    bool m_expired = false;
};

// ---- Completion<T> / Resolver<T>: one value that arrives later, from any thread
class ResolverDropped : public std::exception {
public:
    const char *what() const noexcept override { return "the callee dropped its Resolver without an answer"; }
};

namespace detail {
template <class T> struct CompletionState final : Delivery {
    std::shared_ptr<Inbox> inbox;
    std::stop_source stop;
    std::atomic<int> senders = 0;
    std::atomic<bool> resolved = false;
    bool hop = false;
    std::optional<Stored<T>> value; // written by the one who sets resolved, read after the delivery
    std::exception_ptr error;
    bool delivered = false; // the rest: main thread only
    Suspension *waiter = nullptr;
    void deliver() override
    {
        if (hop)
            --inbox->outstanding;
        delivered = true;
        if (waiter)
            waiter->wake();
    }
};
} // namespace detail

template <class T> class Resolver { // copies share the one answer; the first one counts
public:
    explicit Resolver(std::shared_ptr<detail::CompletionState<T>> s) : m_s(std::move(s)) { ++m_s->senders; }
    Resolver(const Resolver &o) : m_s(o.m_s)
    {
        if (m_s)
            ++m_s->senders;
    }
    Resolver(Resolver &&o) noexcept = default;
    Resolver &operator=(Resolver o) noexcept
    {
        std::swap(m_s, o.m_s);
        return *this;
    }
    ~Resolver()
    {
        if (m_s && --m_s->senders == 0)
            fail(std::make_exception_ptr(ResolverDropped()));
    }
    template <class... U> void resolve(U &&...u) const
    {
        if (!m_s->resolved.exchange(true)) {
            m_s->value.emplace(std::forward<U>(u)...);
            m_s->inbox->put(m_s);
        }
    }
    void fail(std::exception_ptr e) const
    {
        if (!m_s->resolved.exchange(true)) {
            m_s->error = std::move(e);
            m_s->inbox->put(m_s);
        }
    }
    std::stop_token stopToken() const { return m_s->stop.get_token(); } // set when the job is cancelled or gone

private:
    std::shared_ptr<detail::CompletionState<T>> m_s;
};

template <class T = void> class [[nodiscard]] Completion {
    using State = detail::CompletionState<T>;

public:
    explicit Completion(MainQueue &queue, bool threadHop = false) : m_s(std::make_shared<State>())
    {
        m_s->inbox = queue.inbox();
        m_s->hop = threadHop;
        if (threadHop)
            ++m_s->inbox->outstanding;
    }
    Completion(Completion &&) noexcept = default;
    Completion &operator=(Completion &&) = delete;
    ~Completion()
    {
        if (m_s && !m_s->delivered)
            m_s->stop.request_stop();
    }
    Resolver<T> resolver() const { return Resolver<T>(m_s); }

    class Awaiter final : public detail::Suspension {
    public:
        explicit Awaiter(std::shared_ptr<State> s) : m_s(std::move(s)) { }
        ~Awaiter() override { m_s->waiter = nullptr; }
        bool await_ready() const noexcept { return m_s->delivered; }
        template <detail::JobPromise P> void await_suspend(std::coroutine_handle<P> h)
        {
            m_s->waiter = this;
            suspend(*h.promise().core, h);
        }
        T await_resume()
        {
            if (m_s->error)
                std::rethrow_exception(std::move(m_s->error));
            if constexpr (!std::is_void_v<T>)
                return std::move(*m_s->value);
        }

    private:
        void jobCancelled() override { m_s->stop.request_stop(); } // and go on waiting for the answer
        std::shared_ptr<State> m_s;
    };
    Awaiter operator co_await() & { return Awaiter(m_s); }
    void operator co_await() && = delete; // keep it in a variable: g++ 12 breaks lambdas in a co_await expression

private:
    std::shared_ptr<State> m_s;
};

} // namespace jobs

template <class T, class... A> struct std::coroutine_traits<jobs::Async<T>, A...> {
    static_assert([] {
        if constexpr (sizeof...(A) > 0)
            return jobs::detail::parametersOk<A...>();
        else
            return true;
    }());
    using promise_type = jobs::detail::Promise<T>;
};
