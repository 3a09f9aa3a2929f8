#pragma once
#include "Service/Net/NetworkProblem.h"
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace veranox {

/// Somebody else has the address, or a connection goes out from it. By whom is another question, as that takes time.
class AddressInUse : public NetworkProblem {
public:
    using NetworkProblem::NetworkProblem;
};

/// Listens at that address, which is one of loopback. Throws NetworkProblem.
boost::asio::ip::tcp::acceptor openListener(
    const boost::asio::any_io_executor &executor, const boost::asio::ip::tcp::endpoint &endpoint);

} // namespace veranox
