#pragma once
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>
#include <memory>
#include <string>

namespace veranox {

/// One end of a TLS connection that somebody else took.
using TlsStream = boost::beast::ssl_stream<boost::beast::tcp_stream>;

/// A client's context that knows whom this computer trusts. Fails with boost::system::system_error when the system's
/// library refuses. Reading all those certificates takes some 20 ms, so a thread of its own does it.
boost::asio::awaitable<std::unique_ptr<boost::asio::ssl::context>> clientContext();

/// What came of a handshake.
struct TlsGreeting {
    std::string error; // a sentence; empty when the connection is secure
    std::string certificateProblem; // why the host's certificate is not trusted, in a few words; empty when it is
};

/// Asks for the host by name and shakes hands within the time that the stream has left. A certificate that is not
/// trusted is told and does not end the connection: for whoever only looks, nothing secret goes over it. The stream
/// must outlive it.
boost::asio::awaitable<TlsGreeting> greet(TlsStream *stream, std::string host);

} // namespace veranox
