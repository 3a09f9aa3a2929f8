#include "Service/Net/LoopbackEndpoint.h"

#include "Service/Text/Words.h"
#include <charconv>
#include <stdexcept>

namespace veranox {

namespace {

std::uint16_t parsePort(std::string_view text, std::uint16_t leastPort)
{
    std::uint16_t port = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (failure == std::errc{} && end == text.data() + text.size() && port >= leastPort)
        return port;
    throw std::invalid_argument(
        "must end in a port from " + std::to_string(leastPort) + " to 65535, for example 127.0.0.1:43200");
}

std::string parseHost(std::string_view text)
{
    const std::string host = lowered(text);
    if (host == "127.0.0.1" || host == "localhost")
        return "127.0.0.1";
    if (host == "[::1]")
        return "::1";
    throw std::invalid_argument(
        "must be bound to loopback, so that no other computer can reach it: use 127.0.0.1, localhost or [::1]");
}

} // namespace

LoopbackEndpoint parseLoopbackEndpoint(std::string_view text, std::uint16_t leastPort)
{
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos || text.ends_with(']'))
        throw std::invalid_argument("must be HOST:PORT, for example 127.0.0.1:43200");
    return {parseHost(text.substr(0, colon)), parsePort(text.substr(colon + 1), leastPort)};
}

std::string toText(const LoopbackEndpoint &endpoint)
{
    const bool isIPv6 = endpoint.host.find(':') != std::string::npos;
    return (isIPv6 ? "[" + endpoint.host + "]" : endpoint.host) + ":" + std::to_string(endpoint.port);
}

} // namespace veranox
