#include "Service/Text/Visible.h"

#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace veranox {

namespace {

/// Drawn as nothing though it counts as a symbol.
constexpr UChar32 emptyBraillePattern = 0x2800;

bool shows(UChar32 character)
{
    return character >= 0 && u_isgraph(character) != 0
        && u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) == 0 && character != emptyBraillePattern;
}

} // namespace

bool isVisible(std::string_view text)
{
    const char *const bytes = text.data();
    const auto size = static_cast<std::int64_t>(text.size());
    for (std::int64_t at = 0; at < size;) {
        UChar32 character = 0;
        U8_NEXT(bytes, at, size, character);
        if (!shows(character))
            return false;
    }
    return true;
}

} // namespace veranox
