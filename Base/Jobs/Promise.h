#pragma once
#include "Base/Jobs/JobCore.h"
#include <concepts>
#include <coroutine>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace jobs {

template <class T> class Async;

namespace detail {

template <class T> using Stored = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

// The part of a frame that the job sees.
struct PromiseBase {
    JobCore *core = nullptr;
    std::coroutine_handle<> continuation; // the frame that awaits this one; null for the root of a job
    std::exception_ptr error;

    // Goes back to the job's loop, which resumes the awaiting frame: the stack stays flat at every optimisation level.
    struct Final {
        bool await_ready() const noexcept { return false; }
        template <class P> void await_suspend(std::coroutine_handle<P> self) noexcept
        {
            const PromiseBase &promise = self.promise();
            promise.core->continueWith(promise.continuation);
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
    void return_value(U &&result)
    {
        value.emplace(std::forward<U>(result));
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

} // namespace detail
} // namespace jobs
