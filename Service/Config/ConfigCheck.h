#pragma once
#include "Service/Config/ConfigDocument.h"
#include <cstdint>

namespace veranox {

/// Throws Refusal at the first thing in router and profiles with which the service could not run: first each profile by
/// itself, then suffixes and address ranges that two of them claim, then the router, then ports that are used twice.
/// Of two suffixes the longer one decides, so one that lies within another's is no claim on the same names.
void checkConfig(const ConfigDocument &document, std::uint16_t controlPort);

} // namespace veranox
