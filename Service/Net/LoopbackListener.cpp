#include "Service/Net/LoopbackListener.h"

#include "Service/Net/PortHolder.h"
#include "Service/Text/ServiceProblem.h"
#include <boost/asio/ip/address.hpp>

namespace veranox {

namespace asio = boost::asio;

namespace {

std::string takenSentence(const LoopbackEndpoint &endpoint)
{
    const std::optional<PortHolder> holder = findPortHolder(endpoint);
    const std::string by = holder ? holder->program + " (process " + std::to_string(holder->process) + ")"
                                  : "another program, which the system does not tell";
    return "The address " + toText(endpoint) + " is taken by " + by
        + "; end that program or choose another address with --listen.";
}

} // namespace

asio::ip::tcp::acceptor listenOnLoopback(asio::io_context &context, const LoopbackEndpoint &endpoint)
{
    const asio::ip::tcp::endpoint address(asio::ip::make_address(endpoint.host), endpoint.port);
    asio::ip::tcp::acceptor acceptor(context);
    boost::system::error_code failure;
    acceptor.open(address.protocol(), failure);
    if (!failure)
        acceptor.set_option(asio::socket_base::reuse_address(true), failure);
    if (!failure)
        acceptor.bind(address, failure);
    if (!failure)
        acceptor.listen(asio::socket_base::max_listen_connections, failure);
    if (failure == asio::error::address_in_use)
        throw ServiceProblem(takenSentence(endpoint));
    if (failure)
        throw ServiceProblem("The service cannot listen at " + toText(endpoint) + " (" + failure.message()
            + "); choose another address with --listen.");
    return acceptor;
}

} // namespace veranox
