#pragma once
#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace veranox {

/// Owns one open file.
class Descriptor {
public:
    explicit Descriptor(int value) : m_value(value) { }
    Descriptor(Descriptor &&other) noexcept : m_value(std::exchange(other.m_value, -1)) { }
    Descriptor &operator=(Descriptor &&) = delete;
    ~Descriptor()
    {
        if (m_value >= 0)
            ::close(m_value);
    }

    int get() const { return m_value; }
    /// Gives the file away.
    int release() { return std::exchange(m_value, -1); }
    /// Takes over another file and closes the one that it had.
    void reset(int value)
    {
        if (m_value >= 0)
            ::close(m_value);
        m_value = value;
    }
    /// Closes now and tells whether the system took everything that was written.
    bool close() { return ::close(std::exchange(m_value, -1)) == 0; }

private:
    int m_value;
};

/// The failure of the last system call, as an exception that names the step.
[[noreturn]] inline void throwSystemError(const std::string &step)
{
    throw std::system_error(errno, std::generic_category(), step);
}

} // namespace veranox
