#pragma once
#include "Service/Config/PublicationSettings.h"
#include <boost/json/object.hpp>
#include <cstdint>
#include <optional>
#include <string>

namespace veranox {

/// The two policy entries that would open a node to devices of its tailnet, ready to paste.
struct PolicyHint {
    std::string hostAlias;
    std::string nodeIP;
    std::string source;
    std::string hostsEntry;
    std::string grant;
    std::string policyURL;

    bool operator==(const PolicyHint &) const = default;
};

/// Which devices the tailnet's policy lets connect to a publication.
struct Reachability {
    std::string state; // "reachable", "unreachable", "unknown"; empty while nothing is served
    std::int64_t peers = 0;
    bool everyone = false;
    std::string detail;
    std::optional<PolicyHint> hint;

    bool operator==(const Reachability &) const = default;
};

/// How a publication fares at this moment.
struct PublicationStatus {
    std::string state = "stopped"; // "listening", "starting", "error", "stopped" or "blocked"
    std::string address; // what other devices of the tailnet use; empty until known
    std::int64_t activeConns = 0;
    std::string lastError;
    std::string lastActive; // RFC 3339 in UTC, or empty
    Reachability reachability;

    bool operator==(const PublicationStatus &) const = default;
};

/// What other devices of the tailnet type to reach it on a node of that name; the port of https goes without saying.
std::string publishedAddress(const PublicationSettings &settings, const std::string &host);

/// The publication as the control API reports it: settings and status side by side, every key always present. A hint
/// that there is not is null.
boost::json::object publicationRecord(
    const std::string &name, const PublicationSettings &settings, const PublicationStatus &status);

} // namespace veranox
