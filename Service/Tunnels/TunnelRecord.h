#pragma once
#include "Service/Config/TunnelSettings.h"
#include <boost/json/object.hpp>
#include <cstdint>
#include <string>

namespace veranox {

/// How a tunnel fares at this moment.
struct TunnelStatus {
    std::string state = "stopped"; // "listening", "starting", "error" or "stopped"
    std::int64_t activeConns = 0;
    std::string lastError;

    bool operator==(const TunnelStatus &) const = default;
};

/// The tunnel as the control API reports it: settings and status side by side, every key always present.
boost::json::object tunnelRecord(const std::string &name, const TunnelSettings &settings, const TunnelStatus &status);

} // namespace veranox
