#include "Service/Control/ControlRequest.h"

#include "Service/Text/Words.h"
#include <charconv>

namespace veranox {

namespace {

std::optional<char> unescape(std::string_view digits)
{
    unsigned value = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const bool isWhole = failure == std::errc{} && digits.size() == 2 && end == digits.data() + digits.size();
    if (!isWhole || value == 0)
        return std::nullopt;
    return static_cast<char>(value);
}

} // namespace

std::optional<std::string> percentDecoded(std::string_view segment)
{
    std::string text;
    while (!segment.empty()) {
        if (segment.front() != '%') {
            text += segment.front();
            segment.remove_prefix(1);
            continue;
        }
        const std::optional<char> character = unescape(segment.substr(1, 2));
        if (!character)
            return std::nullopt;
        text += *character;
        segment.remove_prefix(3);
    }
    return isUtf8(text) ? std::optional(text) : std::nullopt;
}

std::optional<RequestTarget> parseTarget(std::string_view target)
{
    if (!target.starts_with('/'))
        return std::nullopt;
    RequestTarget result;
    const std::size_t question = target.find('?');
    if (question != std::string_view::npos)
        result.query = target.substr(question + 1);
    std::string_view path = target.substr(0, question);
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::string_view segment = path.substr(0, path.find('/'));
        std::optional<std::string> text = percentDecoded(segment);
        if (!text || text->contains('/'))
            return std::nullopt;
        result.segments.push_back(std::move(*text));
        path.remove_prefix(segment.size());
    }
    return result;
}

} // namespace veranox
