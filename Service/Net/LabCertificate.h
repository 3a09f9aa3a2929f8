#pragma once
#include <boost/asio/ssl/context.hpp>
#include <string>

namespace veranox {

/// A TLS server's context with a fresh key and a certificate for that host name, signed by itself and good for a month.
/// Throws std::runtime_error when the system's library refuses.
boost::asio::ssl::context selfSignedContext(const std::string &hostname);

} // namespace veranox
