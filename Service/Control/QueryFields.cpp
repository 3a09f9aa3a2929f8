#include "Service/Control/QueryFields.h"

#include "Service/Control/ControlRequest.h"
#include "Service/Text/Refusal.h"
#include <charconv>

namespace veranox {

namespace {

[[noreturn]] void refuse(const std::string &sentence)
{
    throw Refusal(Refusal::Kind::badInput, sentence);
}

std::string decoded(std::string_view text)
{
    if (std::optional<std::string> plain = percentDecoded(text))
        return *plain;
    refuse("The query of the request is not well formed.");
}

} // namespace

QueryFields::QueryFields(std::string_view query)
{
    while (!query.empty()) {
        const std::string_view field = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(query.size(), field.size() + 1));
        if (field.empty())
            continue;
        const std::size_t equals = std::min(field.find('='), field.size());
        const std::size_t valueStart = std::min(equals + 1, field.size());
        m_fields.emplace_back(decoded(field.substr(0, equals)), decoded(field.substr(valueStart)));
    }
}

std::optional<std::string> QueryFields::text(std::string_view key) const
{
    std::optional<std::string> found;
    for (const auto &[name, value] : m_fields) {
        if (name == key && found)
            refuse("The key " + std::string(key) + " stands twice in the query.");
        if (name == key)
            found = value;
    }
    return found;
}

bool QueryFields::flag(std::string_view key, bool fallback) const
{
    const std::optional<std::string> value = text(key);
    if (!value)
        return fallback;
    if (*value != "true" && *value != "false")
        refuse("The value of " + std::string(key) + " must be true or false.");
    return *value == "true";
}

std::int64_t QueryFields::number(std::string_view key, NumberRange range, std::int64_t fallback) const
{
    const std::optional<std::string> value = text(key);
    if (!value)
        return fallback;
    std::int64_t number = 0;
    const auto [end, failure] = std::from_chars(value->data(), value->data() + value->size(), number);
    if (failure != std::errc{} || end != value->data() + value->size() || number < range.least || number > range.most)
        refuse("The value of " + std::string(key) + " must be a whole number from " + std::to_string(range.least)
            + " to " + std::to_string(range.most) + ".");
    return number;
}

} // namespace veranox
