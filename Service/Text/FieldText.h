#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace veranox {

/// What is wrong with a text that people typed into a field of one line, as the end of a sentence about it; nothing
/// when it is fit to be kept: no control characters and at most `most` bytes.
std::optional<std::string> lineProblem(std::string_view text, std::size_t most);

} // namespace veranox
