#pragma once
#include "Service/Net/Flow.h"
#include <span>

namespace veranox {

/// One end of a forwarded stream whose bytes go over the wire as they are. The socket must not block.
class PlainEnd {
public:
    explicit PlainEnd(int socket) : m_socket(socket) { }

    Transfer read(std::span<char> room) const;
    Transfer write(std::span<const char> bytes) const;
    /// Half-closes.
    Flow finish() const;

private:
    int m_socket;
};

} // namespace veranox
