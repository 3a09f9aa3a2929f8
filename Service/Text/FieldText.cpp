#include "Service/Text/FieldText.h"

#include <algorithm>

namespace veranox {

std::optional<std::string> lineProblem(std::string_view text, std::size_t most)
{
    if (text.size() > most)
        return "has more than " + std::to_string(most) + " bytes";
    if (std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }))
        return "holds a control character";
    return std::nullopt;
}

} // namespace veranox
