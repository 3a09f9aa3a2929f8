#pragma once
#include <QStringView>

// Characters as a person counts them, the extended grapheme clusters of Unicode: a letter with its accents, a flag, a
// family of emoji are one each, however many code units they take. Pure functions, any thread.
namespace characters {

// Where the first `count` characters of the text end; the text's size when it holds no more than these. Never a place
// inside of a surrogate pair.
qsizetype endOfFirst(qsizetype count, QStringView text);

// Whether the text holds more than `limit` characters.
bool exceed(qsizetype limit, QStringView text);

} // namespace characters
