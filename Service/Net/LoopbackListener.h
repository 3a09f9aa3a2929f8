#pragma once
#include "Service/Net/LoopbackEndpoint.h"
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace veranox {

/// Listens at the endpoint. Throws ServiceProblem, which says who holds the port where the system tells.
boost::asio::ip::tcp::acceptor listenOnLoopback(boost::asio::io_context &context, const LoopbackEndpoint &endpoint);

} // namespace veranox
