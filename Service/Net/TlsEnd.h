#pragma once
#include "Service/Net/StreamSocket.h"
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ssl/context.hpp>
#include <memory>

namespace veranox {

/// Ends TLS on a connection and gives back a socket that carries what was inside; a closed one when the client does not
/// manage a handshake within 10 seconds. When the plain side ends its half, so does the TLS connection as a whole.
boost::asio::awaitable<StreamSocket> endTls(StreamSocket client, std::shared_ptr<boost::asio::ssl::context> context);

} // namespace veranox
