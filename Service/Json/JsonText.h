#pragma once
#include <boost/json/value.hpp>
#include <string>
#include <string_view>

namespace veranox {

/// Reads one JSON value. Throws JsonProblem with line and column (both from 1, columns in bytes) where the text stops
/// being JSON or nests deeper than 32 levels, and with the key that an object has twice.
boost::json::value parseJson(std::string_view text);

/// The value in one line. Whatever bytes its texts hold, this is JSON in UTF-8: what is no UTF-8 becomes U+FFFD, so
/// that one text from outside never costs the reader all the others. Nothing else writes JSON.
std::string compactJson(const boost::json::value &value);

/// The value as people like to read and edit it: indented by two blanks, one member a line, ending in a line feed. In
/// UTF-8 as compactJson is.
std::string prettyJson(const boost::json::value &value);

} // namespace veranox
