#include "Service/Reports/PathTarget.h"

#include "Service/Net/HostPort.h"
#include "Service/Text/Words.h"
#include <boost/asio/ip/address.hpp>
#include <stdexcept>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr std::uint16_t httpPort = 80;
constexpr std::uint16_t httpsPort = 443;

std::optional<asio::ip::address> addressOf(std::string_view text)
{
    boost::system::error_code failure;
    const asio::ip::address address = asio::ip::make_address(std::string(text), failure);
    return failure ? std::nullopt : std::optional(address);
}

} // namespace

std::optional<PathTarget> parsePathTarget(std::string_view text)
{
    PathTarget target;
    if (const std::size_t scheme = text.find("://"); scheme != std::string_view::npos) {
        target.scheme = lowered(text.substr(0, scheme));
        text.remove_prefix(scheme + 3);
    }
    const std::size_t authorityEnd = std::min(text.find_first_of("/?#"), text.size());
    std::string_view path = text.substr(authorityEnd);
    path = path.substr(0, path.find('#'));
    if (!path.empty())
        target.path = (path.starts_with('/') ? "" : "/") + std::string(path);
    std::string authority(text.substr(0, authorityEnd));
    authority.erase(0, authority.rfind('@') + 1);
    const std::uint16_t usualPort = target.scheme == "https" ? httpsPort : httpPort;
    const bool isBareAddress = addressOf(authority).has_value();
    if (isBareAddress && authority.contains(':'))
        authority = "[" + authority + "]";
    if (!authority.contains(':') || authority.ends_with(']'))
        authority += ":" + std::to_string(usualPort);
    try {
        const HostPort endpoint = parseHostPort(authority);
        target.host = lowered(endpoint.host);
        target.port = endpoint.port;
    } catch (const std::invalid_argument &) {
        return std::nullopt;
    }
    if (target.host.ends_with('.'))
        target.host.pop_back();
    return target.host.empty() ? std::nullopt : std::optional(target);
}

} // namespace veranox
