#pragma once
#include "Service/Config/ConfigDocument.h"

namespace veranox {

/// Throws Refusal at the first profile with a field that cannot be used.
void checkProfiles(const NamedList<ProfileSettings> &profiles);

/// Throws Refusal when two profiles claim the same suffix or the same range of addresses, so that one would win by
/// chance.
void checkClaims(const NamedList<ProfileSettings> &profiles);

} // namespace veranox
