#include "Service/Routing/PathRoute.h"

#include "Service/Text/Words.h"
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>

namespace veranox {

namespace asio = boost::asio;

namespace {

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

std::optional<PathRoute> findRoute(const ConfigDocument &document, const std::string &host)
{
    if (const auto address = addressOf(host))
        return routeOfAddress(document, *address);
    return routeOfName(document, host);
}

} // namespace veranox
