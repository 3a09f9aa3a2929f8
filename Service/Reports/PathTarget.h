#pragma once
#include "Service/Config/ConfigDocument.h"
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

/// The rule by which a profile owns a host.
struct PathRoute {
    std::size_t profile = 0; // place in the document
    std::string suffix; // of a rule for names
    std::string ipRoute; // of a rule for addresses

    bool operator==(const PathRoute &) const = default;
};

/// Which profile owns the host: of the names' rules the longest suffix wins, of the addresses' the narrowest range, and
/// among equals the first profile. Nothing when none does.
std::optional<PathRoute> findRoute(const ConfigDocument &document, const std::string &host);

} // namespace veranox
