#pragma once
#include "Service/Net/HostPort.h"
#include "Service/Nodes/NodeEngine.h"
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <optional>
#include <string>

namespace veranox {

/// The longest that a probe waits for one connection.
inline constexpr std::chrono::milliseconds longestDial{1500};

/// A connection, or why there is none.
struct DialResult {
    std::optional<boost::asio::ip::tcp::socket> socket;
    std::string problem;
};

/// Connects through the node of the profile and gives up after `most`. The engine must outlive it.
boost::asio::awaitable<DialResult> dialWithin(
    NodeEngine *nodes, std::string profile, HostPort target, std::chrono::milliseconds most);

} // namespace veranox
