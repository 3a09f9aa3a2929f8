#pragma once
#include <cstddef>

namespace veranox {

/// Why a forwarded stream is over. Whatever is not `ended` has become a reset on both sides.
enum class CloseReason {
    ended, // both sides ended in order
    resetByClient,
    resetByTarget,
    turnedAway, // it may not come in
    refused, // there was no room
    dialFailed,
    handshakeFailed,
    handshakeTookTooLong,
    dialTookTooLong,
    halfClosedTooLong,
    idleTooLong,
    stopped, // whoever listened has stopped
    shed, // another needed its place
    failed, // within the service itself
};

inline constexpr std::size_t closeReasonCount = static_cast<std::size_t>(CloseReason::failed) + 1;

} // namespace veranox
