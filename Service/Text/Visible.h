#pragma once
#include <string_view>

namespace veranox {

/// True when every character of the text shows: no blanks or controls, nothing that joins, turns or hyphenates without
/// a trace, nothing that Unicode has not assigned. False for what is no UTF-8.
bool isVisible(std::string_view text);

} // namespace veranox
