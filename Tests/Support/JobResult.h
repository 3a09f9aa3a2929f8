// Runs one operation to its end, in virtual time, and gives what it gave.
#pragma once
#include "Tests/Support/VirtualTime.h"
#include <exception>
#include <optional>
#include <stdexcept>

namespace job_result {

template <class T> jobs::Async<> keep(jobs::Async<T> operation, std::optional<T> *result, std::exception_ptr *failure)
{
    try {
        result->emplace(co_await std::move(operation));
    } catch (...) {
        *failure = std::current_exception();
    }
}

inline jobs::Async<bool> ended(jobs::Async<> operation)
{
    co_await std::move(operation);
    co_return true;
}

} // namespace job_result

// What it gave or threw; an operation that still waits after `limit` is a failure of the test.
template <class T>
T resultOf(jobs::World &world, jobs::Async<T> operation, jobs::Clock::Duration limit = std::chrono::seconds(60))
{
    std::optional<T> result;
    std::exception_ptr failure;
    jobs::JobScope scope(world.queue);
    scope.start(job_result::keep(std::move(operation), &result, &failure));
    world.run(limit);
    if (failure)
        std::rethrow_exception(failure);
    if (!result)
        throw std::runtime_error("the operation still waits");
    return *std::move(result);
}

inline void finish(jobs::World &world, jobs::Async<> operation)
{
    resultOf(world, job_result::ended(std::move(operation)));
}
