#pragma once
#include "Service/Config/ConfigStore.h"
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace veranox {

/// What one client may take of the service. The application sends a handful of small requests every 2 to 15 seconds.
struct ControlLimits {
    std::size_t connections = 64; // at the same time; one more pushes out the one that waits longest
    std::uint32_t headerBytes = 16 * 1024; // of one request
    std::uint64_t bodyBytes = ConfigStore::sizeLimit; // of one request: whatever was given out can be sent back
    std::uint64_t framedBytes = 2 * ConfigStore::sizeLimit; // of one body with the chunk headers and trailers around it
    std::uint32_t pieceBytes = 64 * 1024; // of what frames a body, in one line or in all trailers; also of what has
                                          // come of the next requests
    std::uint64_t drainBytes = 4 * ConfigStore::sizeLimit; // read for nothing, of a request that is refused
    std::chrono::milliseconds firstByte{10000}; // from the connection to the first byte
    std::chrono::milliseconds idle{60000}; // between two requests, longer than the application's pause
    std::chrono::milliseconds request{10000}; // from a request's first byte to its last
    std::chrono::milliseconds write{10000}; // for an answer to be taken
    std::chrono::milliseconds linger{5000}; // for a refused client to send the rest and read why
    std::chrono::milliseconds stop{400}; // for running answers once the service ends
};

} // namespace veranox
