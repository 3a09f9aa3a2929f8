#include "Service/Reports/PathTarget.h"

#include "Service/Net/HostPort.h"
#include "Service/Text/Words.h"
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>
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

/// The prefix length of the range when it holds the address, otherwise nothing. A plain address is a range of its own.
std::optional<int> matchingPrefix(const std::string &range, const asio::ip::address &address)
{
    boost::system::error_code failure;
    if (const auto single = addressOf(range))
        return *single == address ? std::optional(address.is_v4() ? 32 : 128) : std::nullopt;
    if (address.is_v4()) {
        const asio::ip::network_v4 network = asio::ip::make_network_v4(range, failure);
        const bool holds = !failure
            && asio::ip::network_v4(address.to_v4(), network.prefix_length()).canonical() == network.canonical();
        return holds ? std::optional<int>(network.prefix_length()) : std::nullopt;
    }
    const asio::ip::network_v6 network = asio::ip::make_network_v6(range, failure);
    const bool holds =
        !failure && asio::ip::network_v6(address.to_v6(), network.prefix_length()).canonical() == network.canonical();
    return holds ? std::optional<int>(network.prefix_length()) : std::nullopt;
}

bool owns(const ProfileSettings &profile, const std::string &suffix, const std::string &host)
{
    const std::string dotted = suffix.starts_with('.') ? suffix : "." + suffix;
    return host.ends_with(dotted) || (profile.matchRoot && host == dotted.substr(1));
}

std::optional<PathRoute> routeOfName(const ConfigDocument &document, const std::string &host)
{
    std::optional<PathRoute> best;
    for (std::size_t i = 0; i < document.profiles.size(); ++i) {
        const ProfileSettings &profile = document.profiles[i].second;
        for (const std::string &written : profile.suffixes) {
            const std::string suffix = lowered(written);
            if (suffix.size() > 1 && owns(profile, suffix, host) && (!best || suffix.size() > best->suffix.size()))
                best = PathRoute{i, suffix, ""};
        }
    }
    return best;
}

std::optional<PathRoute> routeOfAddress(const ConfigDocument &document, const asio::ip::address &address)
{
    std::optional<PathRoute> best;
    int bestPrefix = -1;
    for (std::size_t i = 0; i < document.profiles.size(); ++i)
        for (const std::string &range : document.profiles[i].second.ipRoutes)
            if (const std::optional<int> prefix = matchingPrefix(range, address); prefix && *prefix > bestPrefix) {
                best = PathRoute{i, "", range};
                bestPrefix = *prefix;
            }
    return best;
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

std::optional<PathRoute> findRoute(const ConfigDocument &document, const std::string &host)
{
    if (const auto address = addressOf(host))
        return routeOfAddress(document, *address);
    return routeOfName(document, host);
}

} // namespace veranox
