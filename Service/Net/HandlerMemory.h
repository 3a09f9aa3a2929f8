#pragma once
#include <array>
#include <boost/asio/bind_allocator.hpp>
#include <cstddef>
#include <new>
#include <utility>

namespace veranox {

/// Room for one asynchronous operation at a time, so that beginning it neither takes time for an allocation nor can
/// fail for want of memory. A second one, and one that is too large, comes from the heap.
class HandlerMemory {
public:
    HandlerMemory() = default;
    HandlerMemory(const HandlerMemory &) = delete;
    HandlerMemory &operator=(const HandlerMemory &) = delete;
    ~HandlerMemory() = default;

    void *take(std::size_t size)
    {
        if (m_isTaken || size > m_room.size())
            return ::operator new(size);
        m_isTaken = true;
        return m_room.data();
    }
    void giveBack(void *place)
    {
        if (place == m_room.data())
            m_isTaken = false;
        else
            ::operator delete(place);
    }

private:
    alignas(std::max_align_t) std::array<std::byte, 288> m_room{};
    bool m_isTaken = false;
};

/// The allocator of an operation whose memory lies in a HandlerMemory, which outlives it.
template <class T> class HandlerAllocator {
public:
    using value_type = T;

    explicit HandlerAllocator(HandlerMemory &memory) : m_memory(&memory) { }
    // NOLINTNEXTLINE(google-explicit-constructor): allocators of other types are made from it unasked
    template <class U> HandlerAllocator(const HandlerAllocator<U> &other) : m_memory(other.memory()) { }

    T *allocate(std::size_t count) { return static_cast<T *>(m_memory->take(count * sizeof(T))); }
    void deallocate(T *place, std::size_t) { m_memory->giveBack(place); }

    HandlerMemory *memory() const { return m_memory; }
    bool operator==(const HandlerAllocator &) const = default;

private:
    HandlerMemory *m_memory;
};

/// The handler of an operation that lies in that memory.
template <class Handler> auto inMemory(HandlerMemory &memory, Handler handler)
{
    return boost::asio::bind_allocator(HandlerAllocator<std::byte>(memory), std::move(handler));
}

} // namespace veranox
