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
    std::uint16_t port = 0; // 80 or 443 where none was given
    std::string path = "/"; // with the query

    bool operator==(const PathTarget &) const = default;
};

/// Takes a URL, host:port, a host name or an address apart. Nothing when there is no usable host in it.
std::optional<PathTarget> parsePathTarget(std::string_view text);

} // namespace veranox
