#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace veranox {

/// The first key that an object of a valid JSON text has twice, or nothing. A reader would silently keep one of the two
/// and lose the other with the next save.
std::optional<std::string> findDuplicateKey(std::string_view text);

} // namespace veranox
