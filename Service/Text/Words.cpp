#include "Service/Text/Words.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace veranox {

namespace {

bool isSmallLetter(char c)
{
    return c >= 'a' && c <= 'z';
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isNameCharacter(char c)
{
    return isSmallLetter(c) || isDigit(c) || c == '_' || c == '-';
}

struct Scalar {
    std::uint32_t value;
    std::size_t length;
};

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The UTF-8 scalar at the start of the text, or none when the bytes are not well formed.
std::optional<Scalar> firstScalar(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80)
        return Scalar{lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return std::nullopt;
    auto value = static_cast<std::uint32_t>(lead & (0xFFU >> (length + 1)));
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i]))
            return std::nullopt;
        value = (value << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < smallest[length] || value > 0x10FFFF || isSurrogate)
        return std::nullopt;
    return Scalar{value, length};
}

/// Control characters, every kind of white space, and the marks that turn the direction of writing.
bool isBlankOrControl(std::uint32_t c)
{
    return c <= 0x20 || (c >= 0x7F && c <= 0xA0) || c == 0x1680 || c == 0x180E || (c >= 0x2000 && c <= 0x200F)
        || (c >= 0x2028 && c <= 0x202F) || (c >= 0x205F && c <= 0x206F) || c == 0x3000 || c == 0xFEFF;
}

} // namespace

bool isValidName(std::string_view text)
{
    return !text.empty() && text.size() <= 63 && (isSmallLetter(text.front()) || isDigit(text.front()))
        && std::ranges::all_of(text, isNameCharacter);
}

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(
        result, result.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::string printable(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::optional<Scalar> scalar = firstScalar(text);
        const std::size_t length = scalar ? scalar->length : 1;
        if (!scalar)
            result += '?';
        else if (isBlankOrControl(scalar->value))
            result += ' ';
        else
            result += text.substr(0, length);
        text.remove_prefix(length);
    }
    return result;
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::optional<Scalar> scalar = firstScalar(text);
        if (!scalar)
            return false;
        text.remove_prefix(scalar->length);
    }
    return true;
}

std::string toUtf8(std::string_view text)
{
    constexpr std::string_view replacement = "\uFFFD";
    if (isUtf8(text))
        return std::string(text);
    std::string result;
    while (!text.empty()) {
        const std::optional<Scalar> scalar = firstScalar(text);
        const std::size_t length = scalar ? scalar->length : 1;
        result += scalar ? text.substr(0, length) : replacement;
        text.remove_prefix(length);
    }
    return result;
}

std::string shortened(std::string text, std::size_t bytes)
{
    constexpr std::string_view mark = "…";
    if (text.size() <= bytes)
        return text;
    std::size_t end = bytes > mark.size() ? bytes - mark.size() : 0;
    while (end > 0 && isContinuation(text[end]))
        --end;
    text.resize(end);
    return text.append(mark);
}

} // namespace veranox
