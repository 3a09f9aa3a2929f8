#pragma once
#include <chrono>

namespace veranox {

/// How long a forwarded stream may wait for what.
struct ConnectionLimits {
    std::chrono::milliseconds handshake = std::chrono::seconds(10); // TLS, from the accept on
    std::chrono::milliseconds dial = std::chrono::seconds(10);
    std::chrono::milliseconds halfClosed = std::chrono::seconds(60); // one side has ended, and nothing moves
    std::chrono::milliseconds idle = std::chrono::hours(2); // nothing moves either way
};

} // namespace veranox
