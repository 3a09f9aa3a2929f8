#pragma once
#include "Service/Publications/PublicationRecord.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <chrono>
#include <optional>
#include <string>

namespace veranox {

/// How far tunnels and publications may be, as their nodes fare. Answers at once and never fails.
class ForwardingGate {
public:
    virtual ~ForwardingGate() = default;

    /// How far the node lets the tunnel be: "listening" when it may carry connections.
    virtual TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const = 0;
    /// The same for a publication. `hostname` is the host name of the node that publishes.
    virtual PublicationStatus publicationStatus(
        const std::string &name, const PublicationSettings &settings, const std::string &hostname) const = 0;

    /// True for what only shows its state and carries nothing.
    virtual bool isActedTunnel(const std::string &name) const = 0;
    virtual bool isActedPublication(const std::string &name) const = 0;

    /// The moment at which it says something else by the mere passing of time, while no node changes; nothing when
    /// there is none.
    virtual std::optional<std::chrono::steady_clock::time_point> nextChange() const = 0;
};

} // namespace veranox
