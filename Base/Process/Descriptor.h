#pragma once
#include <unistd.h>
#include <utility>

// Owns one file descriptor; -1 stands for none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : m_number(number) { }
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) { }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() { close(); }

    int number() const noexcept { return m_number; }
    explicit operator bool() const noexcept { return m_number >= 0; }
    void close() noexcept
    {
        if (const int number = std::exchange(m_number, -1); number >= 0)
            ::close(number);
    }

private:
    int m_number;
};
