#pragma once
#include "Service/Config/ConfigDocument.h"
#include <cstdint>

namespace veranox {

/// Throws Refusal at the first thing with which the service could not run: what checkConfig() finds, then each tunnel,
/// then each publication, by itself and beside the others. Whatever a save lets through, one by one, passes here. That
/// a tunnel or a publication stands on a profile is not asked for, as a forced save may take that away.
void checkDocument(const ConfigDocument &document, std::uint16_t controlPort);

} // namespace veranox
