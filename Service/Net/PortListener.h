#pragma once
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace veranox {

/// Listens at that address, which is one of loopback. Throws NetworkProblem, which says who holds the port where the
/// system tells.
boost::asio::ip::tcp::acceptor openListener(
    const boost::asio::any_io_executor &executor, const boost::asio::ip::tcp::endpoint &endpoint);

} // namespace veranox
