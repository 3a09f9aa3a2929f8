#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include <boost/json/value.hpp>
#include <string>

namespace veranox {

/// Reads "site", "echo", "blackhole" or a loopback address with or without a port. Throws JsonProblem with `place`.
LabHost readLabHost(const boost::json::value &value, const std::string &place);

} // namespace veranox
