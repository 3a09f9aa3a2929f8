#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Nodes/NodeStatus.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <string>
#include <vector>

namespace veranox {

/// All that the status page tells. The statuses stand in the document's order, one for each of its entries.
struct StatusOverview {
    const ConfigDocument &document;
    std::vector<NodeStatus> profiles;
    std::vector<TunnelStatus> tunnels;
    std::vector<PublicationStatus> publications;
    std::string version; // of the service
    WallTime now;
    bool reloads = false; // whether the browser shall fetch the page again by itself
};

/// The page that shows how the service fares, as a whole HTML document: no script, no form, and nothing from elsewhere
/// but the style sheet beside it.
std::string statusPage(const StatusOverview &overview);

/// Where its style sheet is served, and what it holds.
inline constexpr std::string_view statusStylePath = "/status.css";
std::string_view statusStyle();

/// What a browser may do with the page: draw it, and nothing else.
inline constexpr std::string_view statusPagePolicy =
    "default-src 'none'; style-src 'self'; img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

} // namespace veranox
