#pragma once
#include "Base/Jobs/Answer.h"
#include "Base/Jobs/ThreadHandOver.h"
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

namespace jobs {

namespace detail {
template <class F> class Task final : public QRunnable {
public:
    explicit Task(F work) : m_work(std::move(work)) { }
    void run() override
    {
        takeOver(this);
        m_work();
    }

private:
    F m_work;
};
} // namespace detail

// A pool of threads for calls that block. Its destructor waits for the work at hand: work that can take long looks at
// its stop token.
class Workers {
public:
    explicit Workers(MainQueue &queue, int threads = QThread::idealThreadCount()) : m_queue(queue)
    {
        m_pool.setMaxThreadCount(threads);
    }
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;
    ~Workers() { m_pool.waitForDone(); }

    // Runs work, R() or R(std::stop_token), in another thread, with the caller's ambient text. Await what it returns
    // for the result; what work throws is thrown there. The token is set when the awaiting job is cancelled or gone.
    template <class F> auto run(F work)
    {
        constexpr bool wantsToken = std::is_invocable_v<F &, std::stop_token>;
        using R = typename std::conditional_t<wantsToken, std::invoke_result<F &, std::stop_token>,
            std::invoke_result<F &>>::type;
        Completion<R> completion(m_queue, AnswerFrom::thread);
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
        detail::handOver(runnable);
        m_pool.start(runnable); // the pool deletes it
        return completion;
    }

private:
    MainQueue &m_queue;
    QThreadPool m_pool;
};

} // namespace jobs
