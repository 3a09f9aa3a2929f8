#pragma once
#include "API/Values/VeranoxRecordOverview.h"

// How many tunnels there are, and how many of them need a person. Each is enabled or disabled.
struct VeranoxTunnelOverview : VeranoxRecordOverview {
    VeranoxTunnelOverview() = default;
    explicit VeranoxTunnelOverview(const QList<VeranoxTunnel> &tunnels);

    bool operator==(const VeranoxTunnelOverview &) const = default;
};
