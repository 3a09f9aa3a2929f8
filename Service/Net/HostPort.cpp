#include "Service/Net/HostPort.h"

#include "Service/Text/Words.h"
#include <algorithm>
#include <boost/asio/ip/address.hpp>
#include <charconv>
#include <stdexcept>

namespace veranox {

namespace asio = boost::asio;

namespace {

/// What a host name is made of; bytes of other scripts pass, as internationalised names hold them.
bool isHostCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_'
        || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

bool isHostName(std::string_view text)
{
    constexpr std::size_t longestName = 253;
    return text.size() <= longestName && !text.starts_with('-') && std::ranges::all_of(text, isHostCharacter);
}

bool isBracketedAddress(std::string_view text)
{
    boost::system::error_code failure;
    if (text.size() < 2 || !text.starts_with('[') || !text.ends_with(']'))
        return false;
    asio::ip::make_address_v6(std::string(text.substr(1, text.size() - 2)), failure);
    return !failure && !text.contains('%');
}

std::string parseHost(std::string_view text)
{
    if (text.empty())
        throw std::invalid_argument("must be host:port, but has an empty host");
    if (isBracketedAddress(text))
        return std::string(text.substr(1, text.size() - 2));
    if (!isHostName(text))
        throw std::invalid_argument("must be host:port with a host name, an address, or an IPv6 address in brackets");
    return std::string(text);
}

std::uint16_t parsePort(std::string_view text)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.empty() || !std::ranges::all_of(text, isDigit))
        throw std::invalid_argument("must be host:port, and the port must be numeric");
    std::uint16_t port = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (failure != std::errc{} || port == 0)
        throw std::invalid_argument("must be host:port with a port from 1 to 65535");
    return port;
}

} // namespace

HostPort parseHostPort(std::string_view text)
{
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos || text.ends_with(']'))
        throw std::invalid_argument("must be host:port, for example db.example:5432");
    std::string host = parseHost(text.substr(0, colon));
    return {.host = std::move(host), .port = parsePort(text.substr(colon + 1))};
}

bool isLoopbackHost(std::string_view host)
{
    boost::system::error_code failure;
    const auto address = asio::ip::make_address(std::string(host), failure);
    return lowered(host) == "localhost" || (!failure && address.is_loopback());
}

} // namespace veranox
