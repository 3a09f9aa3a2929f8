#include "Service/Net/PortListener.h"

#include "Service/Net/PortForwarder.h"
#include "Service/Net/PortHolder.h"

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

std::string sentence(const LoopbackEndpoint &endpoint, const boost::system::error_code &failure)
{
    if (failure != asio::error::address_in_use)
        return "The address " + toText(endpoint) + " cannot be used: " + failure.message() + ".";
    const std::optional<PortHolder> holder = findPortHolder(endpoint);
    const std::string by = holder ? holder->program + " (process " + std::to_string(holder->process) + ")"
                                  : "another program, which the system does not tell";
    return "The address " + toText(endpoint) + " is taken by " + by + ".";
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
        throw NetworkProblem(sentence({endpoint.address().to_string(), endpoint.port()}, failure));
    return acceptor;
}

} // namespace veranox
