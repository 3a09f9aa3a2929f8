#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace veranox {

/// An address of this computer that no other computer can reach.
struct LoopbackEndpoint {
    std::string host; // "127.0.0.1" or "::1"
    std::uint16_t port = 0;

    bool operator==(const LoopbackEndpoint &) const = default;
};

/// Reads HOST:PORT with one of the hosts 127.0.0.1, localhost (which is 127.0.0.1) and [::1], and a port from
/// `leastPort` to 65535. Throws std::invalid_argument with the end of a sentence about the text ("must be …").
LoopbackEndpoint parseLoopbackEndpoint(std::string_view text, std::uint16_t leastPort);

/// "127.0.0.1:43200", "[::1]:43200".
std::string toText(const LoopbackEndpoint &endpoint);

} // namespace veranox
