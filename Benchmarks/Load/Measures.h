#pragma once
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace veranox::load {

/// What is to be done at one port of 127.0.0.1, by how many at once, and for how long.
struct Load {
    std::uint16_t port = 0;
    std::size_t clients = 1;
    std::chrono::duration<double> time{1};
};

// Each gives a line "name=number name=number". Times are in microseconds. All throw std::system_error when a connection
// fails.

/// Bytes a second that all clients together get rid of.
std::string measureThroughput(const Load &load);
/// Connections a second, each carrying a question and its answer.
std::string measureNewConnections(const Load &load);
/// Round trips of a byte.
std::string measureEcho(const Load &load);
/// GET /api/health on connections that are kept.
std::string measureReads(const Load &load);
/// Opens all clients, each with one question and its answer, prints "ready", and holds them until standard input ends.
std::string holdIdle(const Load &load);

} // namespace veranox::load
