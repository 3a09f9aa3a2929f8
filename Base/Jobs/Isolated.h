#pragma once
#include "Base/Jobs/Answer.h"
#include "Base/Jobs/ThreadHandOver.h"
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QThread>
#include <chrono>
#include <tuple>

namespace jobs {

namespace detail {
class Call : public QEvent {
public:
    Call() : QEvent(QEvent::User) { }
    virtual void run() = 0;
};

template <class F> class CallOf final : public Call {
public:
    explicit CallOf(F work) : m_work(std::move(work)) { }
    void run() override { m_work(); }

private:
    F m_work;
};

class CallRunner final : public QObject {
protected:
    bool event(QEvent *event) override
    {
        takeOver(event);
        if (event->type() != QEvent::User)
            return QObject::event(event);
        static_cast<Call *>(event)->run();
        return true;
    }
};

template <class T> class ThreadWithObject final : public QThread {
public:
    CallRunner runner;
    std::unique_ptr<T> object; // only touched in this thread
};
} // namespace detail

// The thread of an isolated object.
struct ThreadOfItsOwn {
    QString name;
    std::chrono::milliseconds patience = std::chrono::seconds(5); // how long its end waits for the calls made so far
};

// One object in a thread of its own: made there, called there one call at a time in the order of the calls, and
// destroyed there after the last call. The thread has an event loop. Calls carry the caller's ambient text.
template <class T> class Isolated {
public:
    // Makes T(args...) in the new thread. T's constructor must not throw.
    template <class... A>
    explicit Isolated(MainQueue &queue, const ThreadOfItsOwn &thread, A... args)
        : m_queue(queue),
          m_patience(thread.patience)
    {
        m_thread->setObjectName(thread.name);
        m_thread->runner.moveToThread(m_thread.get());
        m_thread->start();
        enqueue([thread = m_thread.get(), args = std::make_tuple(std::move(args)...)]() mutable {
            std::apply([thread](auto &...a) { thread->object = std::make_unique<T>(std::move(a)...); }, args);
        });
    }
    // Waits for the calls made so far. When they take longer than the thread's patience, it is left to itself with the
    // object: a call that never returns, into a file system that hangs, must not keep the program from its end.
    ~Isolated()
    {
        detail::ThreadWithObject<T> *const thread = m_thread.release();
        QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater); // should it come back later on
        enqueue(*thread, [thread] {
            thread->object.reset();
            detail::handOver(thread);
            thread->quit();
        });
        if (!thread->wait(QDeadlineTimer(m_patience)))
            return;
        detail::takeOver(thread);
        delete thread;
    }
    Isolated(const Isolated &) = delete;
    Isolated &operator=(const Isolated &) = delete;

    // Calls work(T &); nobody waits for it. It must not throw.
    template <class F> void post(F work)
    {
        enqueue([thread = m_thread.get(), work = std::move(work)]() mutable { work(*thread->object); });
    }
    // Calls work(T &); await what this returns for the result, or for what work throws.
    template <class F> auto call(F work)
    {
        using R = std::invoke_result_t<F &, T &>;
        Completion<R> completion(m_queue, AnswerFrom::thread);
        enqueue([thread = m_thread.get(), work = std::move(work), to = completion.resolver()]() mutable {
            detail::answer<R>(to, [&]() -> R { return work(*thread->object); });
        });
        return completion;
    }
    // Calls work(T &, Resolver<R>), which answers when it can. It must not throw.
    template <class R, class F> Completion<R> request(F work)
    {
        Completion<R> completion(m_queue, AnswerFrom::thread);
        enqueue([thread = m_thread.get(), work = std::move(work), to = completion.resolver()]() mutable {
            work(*thread->object, std::move(to));
        });
        return completion;
    }
    // The context of connections whose slots shall run in the object's thread.
    QObject *context() noexcept { return &m_thread->runner; }

private:
    template <class F> void enqueue(F work) { enqueue(*m_thread, std::move(work)); }
    template <class F> static void enqueue(detail::ThreadWithObject<T> &thread, F work)
    {
        auto call = [work = std::move(work), text = ambient()]() mutable {
            const AmbientScope scope(std::move(text));
            work();
        };
        auto *const event = new detail::CallOf<decltype(call)>(std::move(call));
        detail::handOver(event);
        QCoreApplication::postEvent(&thread.runner, event);
    }
    MainQueue &m_queue;
    std::chrono::milliseconds m_patience;
    std::unique_ptr<detail::ThreadWithObject<T>> m_thread = std::make_unique<detail::ThreadWithObject<T>>();
};

} // namespace jobs
