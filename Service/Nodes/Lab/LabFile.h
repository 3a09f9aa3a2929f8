#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include <string>
#include <string_view>

namespace veranox {

/// Reads the description of a simulated network. Throws JsonProblem at the first thing that is wrong, a key that
/// nothing knows included.
LabNetwork parseLab(std::string_view text);

/// The network of a file, or the built-in one for "demo". Throws ServiceProblem that names file, place and remedy.
LabNetwork loadLab(const std::string &fileOrDemo);

} // namespace veranox
