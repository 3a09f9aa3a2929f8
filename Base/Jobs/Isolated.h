#pragma once
#include "Base/Jobs/Answer.h"
#include "Base/Jobs/ThreadHandOver.h"
#include <QCoreApplication>
#include <QEvent>
#include <QThread>
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
} // namespace detail

// One object in a thread of its own: made there, called there one call at a time in the order of the calls, and
// destroyed there after the last call. The thread has an event loop. Calls carry the caller's ambient text.
template <class T> class Isolated {
public:
    // Makes T(args...) in the new thread. T's constructor must not throw.
    template <class... A> explicit Isolated(MainQueue &queue, const QString &threadName, A... args) : m_queue(queue)
    {
        m_thread.setObjectName(threadName);
        m_runner.moveToThread(&m_thread);
        m_thread.start();
        enqueue([this, args = std::make_tuple(std::move(args)...)]() mutable {
            std::apply([this](auto &...a) { m_object = std::make_unique<T>(std::move(a)...); }, args);
        });
    }
    // Waits for the calls made so far.
    ~Isolated()
    {
        enqueue([this] {
            m_object.reset();
            detail::handOver(this);
            m_thread.quit();
        });
        m_thread.wait();
        detail::takeOver(this);
    }
    Isolated(const Isolated &) = delete;
    Isolated &operator=(const Isolated &) = delete;

    // Calls work(T &); nobody waits for it. It must not throw.
    template <class F> void post(F work)
    {
        enqueue([this, work = std::move(work)]() mutable { work(*m_object); });
    }
    // Calls work(T &); await what this returns for the result, or for what work throws.
    template <class F> auto call(F work)
    {
        using R = std::invoke_result_t<F &, T &>;
        Completion<R> completion(m_queue, AnswerFrom::thread);
        enqueue([this, work = std::move(work), to = completion.resolver()]() mutable {
            detail::answer<R>(to, [&]() -> R { return work(*m_object); });
        });
        return completion;
    }
    // Calls work(T &, Resolver<R>), which answers when it can. It must not throw.
    template <class R, class F> Completion<R> request(F work)
    {
        Completion<R> completion(m_queue, AnswerFrom::thread);
        enqueue(
            [this, work = std::move(work), to = completion.resolver()]() mutable { work(*m_object, std::move(to)); });
        return completion;
    }
    // The context of connections whose slots shall run in the object's thread.
    QObject *context() noexcept { return &m_runner; }

private:
    template <class F> void enqueue(F work)
    {
        auto call = [work = std::move(work), text = ambient()]() mutable {
            const AmbientScope scope(std::move(text));
            work();
        };
        auto *const event = new detail::CallOf<decltype(call)>(std::move(call));
        detail::handOver(event);
        QCoreApplication::postEvent(&m_runner, event);
    }
    MainQueue &m_queue;
    QThread m_thread;
    detail::CallRunner m_runner;
    std::unique_ptr<T> m_object; // only touched in m_thread
};

} // namespace jobs
