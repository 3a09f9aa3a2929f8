#pragma once
#include "Service/Net/StreamSocket.h"
#include <boost/asio/awaitable.hpp>
#include <memory>

namespace veranox {

using LabConnection = std::shared_ptr<StreamSocket>;

/// A small web site: a page under every path, over HTTP/1.1. Ends with the connection.
boost::asio::awaitable<void> serveSite(LabConnection connection);

/// Sends back what it gets, until the client has ended its half.
boost::asio::awaitable<void> serveEcho(LabConnection connection);

/// Takes whatever comes and never answers, until the client has ended its half.
boost::asio::awaitable<void> serveBlackhole(LabConnection connection);

} // namespace veranox
