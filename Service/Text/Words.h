#pragma once
#include <string>
#include <string_view>

namespace veranox {

/// True for a name of a profile, tunnel or publication: 1 to 63 characters of a-z, 0-9, "_" and "-", the first one a
/// letter or a digit. The names stand in paths, file names and log lines, so nothing else may.
bool isValidName(std::string_view text);

/// What isValidName demands, as the tail of a sentence.
inline constexpr std::string_view nameRule =
    "must be lowercase letters, numbers, hyphen or underscore, start with a letter or number, and have at most 63 "
    "characters";

/// The text with ASCII letters in lower case.
std::string lowered(std::string_view text);

/// The text with everything that could break a line, move a cursor or end early made harmless: control characters and
/// Unicode line ends and blanks become a plain blank, bytes that are no UTF-8 become "?".
std::string printable(std::string_view text);

/// True when the bytes are well-formed UTF-8.
bool isUtf8(std::string_view text);

/// The text with each byte that belongs to no UTF-8 character replaced by U+FFFD, and otherwise as it is.
std::string toUtf8(std::string_view text);

/// At most `bytes` bytes of the text, cut between characters and with "…" where something was left out.
std::string shortened(std::string text, std::size_t bytes);

} // namespace veranox
