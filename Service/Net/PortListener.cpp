#include "Service/Net/PortListener.h"

#include "Service/Net/LoopbackEndpoint.h"

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

[[noreturn]] void throwProblem(const LoopbackEndpoint &endpoint, const boost::system::error_code &failure)
{
    if (failure == asio::error::address_in_use)
        throw AddressInUse("The address " + toText(endpoint) + " is taken.");
    throw NetworkProblem("The address " + toText(endpoint) + " cannot be used: " + failure.message() + ".");
}

} // namespace

tcp::acceptor openListener(const asio::any_io_executor &executor, const tcp::endpoint &endpoint)
{
    tcp::acceptor acceptor(executor);
    boost::system::error_code failure;
    acceptor.open(endpoint.protocol(), failure);
    if (!failure)
        acceptor.set_option(asio::socket_base::reuse_address(true), failure);
    if (!failure)
        acceptor.bind(endpoint, failure);
    if (!failure)
        acceptor.listen(asio::socket_base::max_listen_connections, failure);
    if (failure)
        throwProblem({endpoint.address().to_string(), endpoint.port()}, failure);
    return acceptor;
}

} // namespace veranox
