#pragma once
#include <unistd.h>
#include <utility>

// Owns an open file of the system; below 0 it owns none. A failure of closing is passed over.
class FileDescriptor {
public:
    explicit FileDescriptor(int number = -1) noexcept : m_number(number) { }
    FileDescriptor(FileDescriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) { }
    FileDescriptor &operator=(FileDescriptor other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    explicit operator bool() const noexcept { return m_number >= 0; }
    int number() const noexcept { return m_number; }

private:
    int m_number;
};
