#pragma once
#include <boost/json/value.hpp>
#include <string>
#include <string_view>

namespace veranox {

/// Reads one JSON value. Throws JsonProblem with line and column (both from 1, columns in bytes) where the text stops
/// being JSON or nests deeper than 32 levels, and with the key that an object has twice.
boost::json::value parseJson(std::string_view text);

/// The value as people like to read and edit it: indented by two blanks, one member a line, ending in a line feed.
std::string prettyJson(const boost::json::value &value);

} // namespace veranox
