#pragma once
#include "Base/Jobs/Completion.h"

namespace jobs::detail {

// Answers with what work() returns or throws.
template <class R, class F> void answer(const Resolver<R> &to, F &&work)
{
    std::exception_ptr error;
    try {
        if constexpr (std::is_void_v<R>) {
            std::forward<F>(work)();
            to.resolve();
        } else {
            to.resolve(std::forward<F>(work)());
        }
    } catch (...) {
        error = std::current_exception();
    }
    if (error) // after the handler, which holds the exception: from here on it belongs to the other thread alone
        to.fail(std::move(error));
}

} // namespace jobs::detail
