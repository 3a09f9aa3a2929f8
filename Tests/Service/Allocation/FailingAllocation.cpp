#include "Tests/Service/Allocation/FailingAllocation.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

thread_local bool isChosen = false;
std::atomic<std::int64_t> left = INT64_MAX; // allocations of the chosen thread until the one that fails

bool isToFail()
{
    return isChosen && left.fetch_sub(1) == 0;
}

void *allocate(std::size_t size)
{
    if (isToFail())
        throw std::bad_alloc();
    if (void *place = std::malloc(size == 0 ? 1 : size))
        return place;
    throw std::bad_alloc();
}

} // namespace

// What Asio takes for its operations; the program is linked with --wrap=aligned_alloc.
extern "C" void *__real_aligned_alloc(std::size_t alignment, std::size_t size);
extern "C" void *__wrap_aligned_alloc(std::size_t alignment, std::size_t size)
{
    return isToFail() ? nullptr : __real_aligned_alloc(alignment, size);
}

void *operator new(std::size_t size)
{
    return allocate(size);
}

void *operator new[](std::size_t size)
{
    return allocate(size);
}

void operator delete(void *place) noexcept
{
    std::free(place);
}

void operator delete[](void *place) noexcept
{
    std::free(place);
}

void operator delete(void *place, std::size_t) noexcept
{
    std::free(place);
}

void operator delete[](void *place, std::size_t) noexcept
{
    std::free(place);
}

namespace veranox::test {

void FailingAllocation::chooseThisThread()
{
    isChosen = true;
}

void FailingAllocation::failAt(std::size_t number)
{
    left = static_cast<std::int64_t>(number);
}

bool FailingAllocation::disarm()
{
    return left.exchange(INT64_MAX) < 0;
}

} // namespace veranox::test
