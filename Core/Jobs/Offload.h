// Work off the main thread: Workers (a pool, for blocking calls) and Isolated<T> (one object, one thread, one call
// at a time, in the order of the calls). Both hand back a Completion; both carry the ambient text over.
#pragma once
#include "Core/Jobs/Job.h"
#include <QCoreApplication>
#include <QEvent>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>
#include <tuple>

#if defined(__SANITIZE_THREAD__) // the stock Qt is not instrumented: tell the sanitizer what its queues guarantee
extern "C" void __tsan_acquire(void *);
extern "C" void __tsan_release(void *);
#else
inline void __tsan_acquire(void *) { }
inline void __tsan_release(void *) { }
#endif

namespace jobs {

namespace detail {
template <class R, class F> void answer(const Resolver<R> &to, F &&f)
{
    try {
        if constexpr (std::is_void_v<R>) {
            f();
            to.resolve();
        } else {
            to.resolve(f());
        }
    } catch (...) {
        to.fail(std::current_exception());
    }
}
template <class F> struct Task final : QRunnable {
    explicit Task(F f) : m_f(std::move(f)) { }
    void run() override
    {
        __tsan_acquire(this);
        m_f();
    }
    F m_f;
};
struct Call : QEvent {
    Call() : QEvent(QEvent::User) { }
    virtual void run() = 0;
};
template <class F> struct CallOf final : Call {
    explicit CallOf(F f) : m_f(std::move(f)) { }
    void run() override { m_f(); }
    F m_f;
};
class CallRunner final : public QObject {
protected:
    bool event(QEvent *e) override
    {
        __tsan_acquire(e);
        if (e->type() != QEvent::User)
            return QObject::event(e);
        static_cast<Call *>(e)->run();
        return true;
    }
};
} // namespace detail

class Workers {
public:
    explicit Workers(MainQueue &queue, int threads = QThread::idealThreadCount()) : m_queue(queue)
    {
        m_pool.setMaxThreadCount(threads);
    }
    ~Workers() { m_pool.waitForDone(); }

    // work: R() or R(std::stop_token), off the main thread. The token is set when the job is cancelled or gone.
    template <class F> auto run(F work)
    {
        constexpr bool wantsToken = std::is_invocable_v<F &, std::stop_token>;
        using R = typename std::conditional_t<wantsToken, std::invoke_result<F &, std::stop_token>,
            std::invoke_result<F &>>::type;
        Completion<R> completion(m_queue, true);
        auto task = [work = std::move(work), to = completion.resolver(), text = ambient()]() mutable {
            const AmbientScope scope(std::move(text));
            detail::answer<R>(to, [&]() -> R {
                if constexpr (wantsToken)
                    return work(to.stopToken());
                else
                    return work();
            });
        };
        auto *const runnable = new detail::Task<decltype(task)>(std::move(task));
        __tsan_release(runnable);
        m_pool.start(runnable);
        return completion;
    }

private:
    MainQueue &m_queue;
    QThreadPool m_pool;
};

template <class T> class Isolated {
public:
    template <class... A> explicit Isolated(MainQueue &queue, const QString &threadName, A... args) : m_queue(queue)
    {
        m_thread.setObjectName(threadName);
        m_runner.moveToThread(&m_thread);
        m_thread.start();
        enqueue([this, args = std::make_tuple(std::move(args)...)]() mutable {
            std::apply([this](auto &...a) { m_object = std::make_unique<T>(std::move(a)...); }, args);
        });
    }
    ~Isolated() // after all calls made so far; the object dies in its thread
    {
        enqueue([this] {
            m_object.reset();
            __tsan_release(this);
            m_thread.quit();
        });
        m_thread.wait();
        __tsan_acquire(this);
    }
    Isolated(const Isolated &) = delete;
    Isolated &operator=(const Isolated &) = delete;

    template <class F> void post(F f) // f(T &); nobody waits
    {
        enqueue([this, f = std::move(f)]() mutable { f(*m_object); });
    }
    template <class F> auto call(F f) // f(T &) gives the answer
    {
        using R = std::invoke_result_t<F &, T &>;
        Completion<R> completion(m_queue, true);
        enqueue([this, f = std::move(f), to = completion.resolver()]() mutable {
            detail::answer<R>(to, [&]() -> R { return f(*m_object); });
        });
        return completion;
    }
    template <class R, class F> Completion<R> request(F f) // f(T &, Resolver<R>) answers later
    {
        Completion<R> completion(m_queue, true);
        enqueue([this, f = std::move(f), to = completion.resolver()]() mutable { f(*m_object, std::move(to)); });
        return completion;
    }
    // any thread: runs f(T &) in the object's thread, unless the object is being destroyed
    QObject *context() noexcept { return &m_runner; }

private:
    template <class F> void enqueue(F f)
    {
        auto call = [f = std::move(f), text = ambient()]() mutable {
            const AmbientScope scope(std::move(text));
            f();
        };
        auto *const event = new detail::CallOf<decltype(call)>(std::move(call));
        __tsan_release(event);
        QCoreApplication::postEvent(&m_runner, event);
    }
    MainQueue &m_queue;
    QThread m_thread;
    detail::CallRunner m_runner;
    std::unique_ptr<T> m_object; // only touched in m_thread
};

} // namespace jobs
