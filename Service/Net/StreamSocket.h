#pragma once
#include <boost/asio/generic/stream_protocol.hpp>

namespace veranox {

/// A connected stream of any family: TCP or a local socket.
using StreamSocket = boost::asio::generic::stream_protocol::socket;

/// Closes so that the other side learns of a failure, not of an orderly end.
inline void closeWithReset(StreamSocket &socket)
{
    boost::system::error_code ignored;
    socket.set_option(boost::asio::socket_base::linger(true, 0), ignored);
    socket.close(ignored);
}

} // namespace veranox
