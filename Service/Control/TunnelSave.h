#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Control/SaveRequests.h"
#include <cstdint>

namespace veranox {

/// The document with the tunnel saved in it, at a local address of its own. Throws Refusal at the first thing that
/// stands against it: names, profile, target, bastion, local address, in this order.
ConfigDocument withTunnel(const ConfigDocument &current, SaveRequest<TunnelSettings> save, std::uint16_t controlPort);

} // namespace veranox
