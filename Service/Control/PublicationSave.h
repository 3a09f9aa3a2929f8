#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Control/SaveRequests.h"
#include <cstdint>

namespace veranox {

/// The document with the publication saved in it. Throws Refusal at the first thing that stands against it: names,
/// profile, backend, target, port, another publication there, reach, in this order.
ConfigDocument withPublication(
    const ConfigDocument &current, SaveRequest<PublicationSettings> save, std::uint16_t controlPort);

} // namespace veranox
