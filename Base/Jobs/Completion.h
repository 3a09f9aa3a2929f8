// One value that arrives later: the door through which callbacks and threads speak to jobs.
#pragma once
#include "Base/Jobs/Promise.h"
#include <QtGlobal>
#include <atomic>
#include <memory>
#include <stop_token>

namespace jobs {

// What awaiting a Completion throws when the last copy of its Resolver went without an answer.
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
    std::exception_ptr error; // likewise
    bool delivered = false; // this and the rest: main thread only
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

// The callee's end. Any thread. Copies share the one answer, and the first answer counts.
template <class T = void> class Resolver {
public:
    explicit Resolver(std::shared_ptr<detail::CompletionState<T>> state) : m_state(std::move(state))
    {
        ++m_state->senders;
    }
    Resolver(const Resolver &other) : m_state(other.m_state)
    {
        if (m_state)
            ++m_state->senders;
    }
    Resolver(Resolver &&other) noexcept = default;
    Resolver &operator=(Resolver other) noexcept
    {
        std::swap(m_state, other.m_state);
        return *this;
    }
    ~Resolver()
    {
        if (m_state && --m_state->senders == 0)
            fail(std::make_exception_ptr(ResolverDropped()));
    }
    // Answers with a T made from these. What its constructor throws leaves the question open.
    template <class... U> void resolve(U &&...parts) const
    {
        std::optional<detail::Stored<T>> value(std::in_place, std::forward<U>(parts)...);
        if (!m_state->resolved.exchange(true)) {
            m_state->value.swap(value);
            m_state->inbox->put(m_state);
        }
    }
    // Answers with an error, which the awaiting job is thrown.
    void fail(std::exception_ptr error) const
    {
        if (!m_state->resolved.exchange(true)) {
            m_state->error = std::move(error);
            m_state->inbox->put(m_state);
        }
    }
    // Set when the awaiting job is cancelled or gone: the answer may come early, or is not wanted any more.
    std::stop_token stopToken() const { return m_state->stop.get_token(); }

private:
    std::shared_ptr<detail::CompletionState<T>> m_state;
};

// Who gives the answer: with Thread, a clock that is moved by hand stands still until it is there.
enum class AnswerFrom { anywhere, thread };

// The caller's end. Main thread only. Await it once: gives the answer or throws the error. Letting it go before the
// answer sets the stop token; so does a cancel of the awaiting job, which then goes on waiting for the answer.
template <class T = void> class [[nodiscard("nobody would get the answer")]] Completion {
    using State = detail::CompletionState<T>;

public:
    explicit Completion(MainQueue &queue, AnswerFrom from = AnswerFrom::anywhere) : m_state(std::make_shared<State>())
    {
        m_state->inbox = queue.inbox();
        m_state->hop = from == AnswerFrom::thread;
        if (m_state->hop)
            ++m_state->inbox->outstanding;
    }
    Completion(Completion &&) noexcept = default;
    Completion &operator=(Completion &&) = delete;
    ~Completion()
    {
        if (m_state && !m_state->delivered)
            m_state->stop.request_stop();
    }
    Resolver<T> resolver() const { return Resolver<T>(m_state); }

    class Awaiter final : public detail::Suspension {
    public:
        explicit Awaiter(std::shared_ptr<State> state) : m_state(std::move(state)) { }
        ~Awaiter() override { m_state->waiter = nullptr; }
        bool await_ready() const noexcept { return m_state->delivered; }
        template <detail::JobPromise P> void await_suspend(std::coroutine_handle<P> frame)
        {
            Q_ASSERT_X(!m_state->waiter, "co_await", "a Completion has one waiter");
            m_state->waiter = this;
            suspend(*frame.promise().core, frame);
        }
        T await_resume()
        {
            if (m_state->error)
                std::rethrow_exception(std::move(m_state->error));
            if constexpr (!std::is_void_v<T>)
                return std::move(*m_state->value);
        }

    private:
        void jobCancelled() override { m_state->stop.request_stop(); }
        std::shared_ptr<State> m_state;
    };
    Awaiter operator co_await() const { return Awaiter(m_state); }

private:
    std::shared_ptr<State> m_state;
};

} // namespace jobs
