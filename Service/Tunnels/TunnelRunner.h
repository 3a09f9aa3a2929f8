#pragma once
#include "Service/Tunnels/TunnelRecord.h"
#include <chrono>
#include <optional>
#include <string>

namespace veranox {

using SteadyTime = std::chrono::steady_clock::time_point;

/// Keeps one tunnel up while its node runs.
class TunnelRunner {
public:
    virtual ~TunnelRunner() = default;

    /// Begins, or tries again when that is due. To be called while the node runs; harmless when repeated.
    virtual void open(SteadyTime now) = 0;
    /// Drops all connections and forgets what went wrong.
    virtual void close() = 0;
    /// When open() is to be called for the next attempt; nothing while there is none to make.
    virtual std::optional<SteadyTime> retryAt() const = 0;
    virtual TunnelStatus status() const = 0;
    /// The password of the account on the bastion has become known, or another one.
    virtual void setSecret(std::string password) = 0;
};

} // namespace veranox
