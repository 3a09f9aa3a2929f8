#include "Service/Reports/PathTarget.h"

#include "Service/Net/HostPort.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <boost/asio/ip/address.hpp>
#include <boost/url/encode.hpp>
#include <boost/url/rfc/pchars.hpp>
#include <cctype>
#include <iterator>
#include <stdexcept>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr std::uint16_t httpPort = 80;
constexpr std::uint16_t httpsPort = 443;

struct SchemePort {
    std::string_view scheme;
    std::uint16_t port;
};

constexpr SchemePort usualPorts[] = {{"http", httpPort}, {"https", httpsPort}, {"ws", httpPort}, {"wss", httpsPort},
    {"ftp", 21}, {"ssh", 22}, {"sftp", 22}, {"smb", 445}, {"mysql", 3306}, {"rdp", 3389}, {"postgres", 5432},
    {"postgresql", 5432}, {"vnc", 5900}, {"redis", 6379}};

std::uint16_t usualPort(std::string_view scheme)
{
    const auto *const known = std::ranges::find(usualPorts, scheme, &SchemePort::scheme);
    return known == std::end(usualPorts) ? httpPort : known->port;
}

bool isEscape(std::string_view text)
{
    const auto isHex = [](unsigned char c) { return std::isxdigit(c) != 0; };
    return text.starts_with('%') && text.size() > 2 && isHex(static_cast<unsigned char>(text[1]))
        && isHex(static_cast<unsigned char>(text[2]));
}

/// Path and query with escapes for all that may not stand in a request; escapes stay as they are.
std::string escaped(std::string_view text)
{
    constexpr auto asTheyAre = boost::urls::pchars + '/' + '?';
    constexpr std::size_t escapeLength = 3;
    std::string all;
    while (!text.empty()) {
        const bool isWritten = isEscape(text);
        const std::string_view piece = text.substr(0, isWritten ? escapeLength : 1);
        all += isWritten ? std::string(piece) : boost::urls::encode(piece, asTheyAre);
        text.remove_prefix(piece.size());
    }
    return all;
}

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
        target.path = (path.starts_with('/') ? "" : "/") + escaped(path);
    std::string authority(text.substr(0, authorityEnd));
    authority.erase(0, authority.rfind('@') + 1);
    const bool isBareAddress = addressOf(authority).has_value();
    if (isBareAddress && authority.contains(':'))
        authority = "[" + authority + "]";
    if (!authority.contains(':') || authority.ends_with(']'))
        authority += ":" + std::to_string(usualPort(target.scheme));
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

std::string hostField(const PathTarget &target)
{
    const std::string host = target.host.contains(':') ? "[" + target.host + "]" : target.host;
    const std::uint16_t usual = target.isSecure() ? httpsPort : httpPort;
    return target.port == usual ? host : host + ":" + std::to_string(target.port);
}

} // namespace veranox
