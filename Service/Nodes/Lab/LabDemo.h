#pragma once
#include <string_view>

namespace veranox {

/// The built-in network: the text of Service/Nodes/Lab/demo.json.
std::string_view labDemoText();

} // namespace veranox
