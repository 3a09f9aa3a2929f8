#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veranox {

/// What a person asked a path for, taken apart.
struct PathTarget {
    std::string scheme; // in lower case; empty when none was given
    std::string host; // in lower case, without a full stop at its end; an IPv6 address without its brackets
    std::uint16_t port = 0; // where none was given the usual one of the scheme, and 80 for a scheme without one
    std::string path = "/"; // with the query, as it may stand in a request

    /// Whether a page can be asked for: of a target without a scheme it may be tried.
    bool mayBeHttp() const { return scheme.empty() || scheme == "http" || scheme == "https"; }
    bool isSecure() const { return scheme == "https"; }

    bool operator==(const PathTarget &) const = default;
};

/// Takes a URL, host:port, a host name or an address apart. What may not stand in a request, such as a blank, is
/// escaped, as a browser would do. Nothing when there is no usable host in it.
std::optional<PathTarget> parsePathTarget(std::string_view text);

/// The host with its port where that is not the usual one of HTTP or HTTPS, as a request names it.
std::string hostField(const PathTarget &target);

} // namespace veranox
