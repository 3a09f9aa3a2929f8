#pragma once
#include "Service/Config/ConfigDocument.h"
#include <cstddef>
#include <optional>
#include <string>

namespace veranox {

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
