#pragma once
#include "Service/Config/ConfigDocument.h"
#include <string_view>

namespace veranox {

/// The document that the sender of the six sections wants: those sections from the body, tunnels, publications and
/// everything unknown from the current document. Throws JsonProblem for what is no such body, and Refusal for the name
/// of a profile that breaks the rule.
ConfigDocument readConfigBody(std::string_view body, const ConfigDocument &current);

} // namespace veranox
