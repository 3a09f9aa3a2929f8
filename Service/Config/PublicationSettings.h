#pragma once
#include "Service/Json/JsonReader.h"
#include <cstdint>
#include <string>

namespace veranox {

/// A publication as the configuration keeps it: a local service, reachable from one profile's tailnet.
struct PublicationSettings {
    std::string displayName;
    std::string profile;
    std::string target; // host:port on loopback
    std::string reach = "tailnet"; // "tailnet" or "funnel"; the latter is kept but never served
    std::int64_t port = 0; // port on the node
    bool tls = false;
    bool disabled = false;

    bool operator==(const PublicationSettings &) const = default;
};

/// Throws JsonProblem at the first member that is missing or wrong.
PublicationSettings readPublication(JsonReader reader);
boost::json::object toJson(const PublicationSettings &publication);

} // namespace veranox
