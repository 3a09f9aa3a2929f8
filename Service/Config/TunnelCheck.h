#pragma once
#include "Service/Config/PortPlan.h"
#include "Service/Config/TunnelSettings.h"
#include <string>
#include <vector>

namespace veranox {

// What of a tunnel's settings can be used, whoever brings them: the sender of a save or the file. Throws Refusal at the
// first thing that cannot.

/// Of tunnels and publications.
void checkDisplayName(const std::string &displayName);

/// The target; for a tunnel over ssh bastion, account and private key; the form of the local address where there is
/// one. Whatever passes can be started as well.
void checkTunnel(const TunnelSettings &tunnel);

/// Whether nothing else has the port of that address.
void checkFree(const std::string &address, const std::vector<PortUse> &taken);

} // namespace veranox
