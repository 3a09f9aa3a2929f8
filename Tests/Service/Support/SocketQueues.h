#pragma once
#include <cstdint>

namespace veranox::test {

/// What the kernel holds for one end of a TCP connection, in bytes.
struct SocketQueues {
    std::uint64_t sending = 0; ///< written here and not yet acknowledged by the other end
    std::uint64_t receiving = 0; ///< arrived here and not yet read

    bool operator==(const SocketQueues &) const = default;
};

/// Of the IPv4 connection's end at `localPort`. Throws when there is no such connection.
SocketQueues socketQueues(std::uint16_t localPort, std::uint16_t remotePort);

} // namespace veranox::test
