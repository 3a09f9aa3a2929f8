#pragma once
#include "Service/Reports/PathQuestion.h"
#include <string_view>

namespace veranox {

/// Reads "target=…&netcheck=true&ping_count=3". A target may be an address with a query of its own, and its "&" and "="
/// come as they are: so the target goes on to the end, but for a netcheck and a ping_count that stand last. Both may
/// also stand in front. Throws Refusal.
PathQuestion readPathQuestion(std::string_view query);

} // namespace veranox
