#pragma once
#include "Base/Jobs/Async.h"
#include <exception>
#include <expected>

// What an operation ended with: its answer, or what it threw.
template <class T> using VeranoxOutcome = std::expected<T, std::exception_ptr>;

// The outcome as a value, which can be looked at outside of a catch block and in any order.
template <class T> jobs::Async<VeranoxOutcome<T>> outcomeOf(jobs::Async<T> operation)
{
    try {
        co_return co_await std::move(operation);
    } catch (...) {
        co_return std::unexpected(std::current_exception());
    }
}
