#pragma once
#include "Base/Jobs/CoroutineParameters.h"
#include "Base/Jobs/Promise.h"
#include <QtGlobal>

namespace jobs {

template <class T = void> class Async;
template <class T = void> class Child;
template <class T> Child<T> fork(Async<T> body);

// What a coroutine function returns. Does nothing until it is awaited inside of a job, as a part of that job (the same
// cancellation, the same ambient text), or made a job of its own by JobScope::start() or fork(). Await it once.
// Awaiting gives the result or throws what the coroutine threw.
template <class T> class [[nodiscard("an Async does nothing until it is awaited or started")]] Async {
public:
    using promise_type = detail::Promise<T>;
    using Handle = std::coroutine_handle<promise_type>;
    explicit Async(Handle frame) noexcept : m_frame(frame) { }
    Async(Async &&other) noexcept : m_frame(std::exchange(other.m_frame, nullptr)) { }
    Async &operator=(Async &&) = delete;
    ~Async()
    {
        if (m_frame)
            m_frame.destroy();
    }

    class Awaiter {
    public:
        explicit Awaiter(Handle callee) noexcept : m_callee(callee) { }
        bool await_ready() const noexcept { return false; }
        template <detail::JobPromise P> void await_suspend(std::coroutine_handle<P> caller) noexcept
        {
            detail::PromiseBase &promise = m_callee.promise();
            promise.core = caller.promise().core;
            promise.continuation = caller;
            promise.core->continueWith(m_callee);
        }
        T await_resume()
        {
            if (m_callee.promise().error)
                std::rethrow_exception(std::move(m_callee.promise().error));
            if constexpr (!std::is_void_v<T>)
                return m_callee.promise().take();
        }

    private:
        Handle m_callee;
    };
    Awaiter operator co_await() && noexcept
    {
        Q_ASSERT_X(m_frame, "co_await", "this Async was started or moved away");
        return Awaiter(m_frame);
    }

private:
    friend class JobScope;
    template <class U> friend Child<U> fork(Async<U> body);
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

} // namespace jobs

template <class T> struct std::coroutine_traits<jobs::Async<T>> {
    using promise_type = jobs::detail::Promise<T>;
};
template <class T, class First, class... Rest> struct std::coroutine_traits<jobs::Async<T>, First, Rest...> {
    static_assert(jobs::detail::checkParameters<First, Rest...>());
    using promise_type = jobs::detail::Promise<T>;
};
