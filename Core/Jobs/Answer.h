#pragma once
#include "Core/Jobs/Completion.h"

namespace jobs::detail {

// Answers with what work() returns or throws.
template <class R, class F> void answer(const Resolver<R> &to, F &&work)
{
    try {
        if constexpr (std::is_void_v<R>) {
            std::forward<F>(work)();
            to.resolve();
        } else {
            to.resolve(std::forward<F>(work)());
        }
    } catch (...) {
        to.fail(std::current_exception());
    }
}

} // namespace jobs::detail
