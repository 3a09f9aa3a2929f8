#include "Service/Json/JsonReader.h"

#include "Service/Json/JsonProblem.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <boost/json/serialize.hpp>

namespace veranox {

namespace json = boost::json;

namespace {

std::string topLevelOr(const std::string &place)
{
    return place.empty() ? "the top level" : place;
}

bool isPlainKey(std::string_view key)
{
    return !key.empty() && isValidName(lowered(key));
}

std::string inQuotes(std::string_view text)
{
    return "\"" + shortened(printable(text), 80) + "\"";
}

std::string asText(const json::value &value, const std::string &place)
{
    if (const json::string *text = value.if_string())
        return std::string(*text);
    throw JsonProblem(place, "must be a text in double quotes");
}

bool asFlag(const json::value &value, const std::string &place)
{
    if (const bool *flag = value.if_bool())
        return *flag;
    throw JsonProblem(place, "must be true or false");
}

std::int64_t asNumber(const json::value &value, const std::string &place, NumberRange range)
{
    const std::int64_t *number = value.if_int64();
    if (number && *number >= range.least && *number <= range.most)
        return *number;
    const std::string rule =
        "must be a whole number from " + std::to_string(range.least) + " to " + std::to_string(range.most);
    if (number || value.is_uint64())
        throw JsonValueProblem(place, rule);
    throw JsonProblem(place, rule);
}

} // namespace

JsonReader::JsonReader(const json::value &value, std::string place)
    : m_object(value.if_object()),
      m_place(std::move(place))
{
    if (!m_object)
        throw JsonProblem(topLevelOr(m_place), "must be an object in braces");
}

std::string JsonReader::placeOf(std::string_view key) const
{
    const std::string name = isPlainKey(key) ? std::string(key) : inQuotes(key);
    return m_place.empty() ? name : m_place + "." + name;
}

std::string JsonReader::place() const
{
    return topLevelOr(m_place);
}

void JsonReader::complain(std::string_view key, std::string text) const
{
    throw JsonProblem(placeOf(key), std::move(text));
}

const json::value *JsonReader::find(std::string_view key)
{
    m_read.emplace(key);
    const json::value *value = m_object->if_contains(key);
    return value && !value->is_null() ? value : nullptr;
}

bool JsonReader::has(std::string_view key) const
{
    return m_object->contains(key);
}

const json::value &JsonReader::require(std::string_view key)
{
    if (const json::value *value = find(key))
        return *value;
    throw JsonProblem(place(), "the key " + inQuotes(key) + " is missing");
}

void JsonReader::requireAll(std::initializer_list<std::string_view> keys)
{
    for (const std::string_view key : keys)
        require(key);
}

std::string JsonReader::text(std::string_view key)
{
    return asText(require(key), placeOf(key));
}

std::string JsonReader::text(std::string_view key, std::string_view fallback)
{
    const json::value *value = find(key);
    return value ? asText(*value, placeOf(key)) : std::string(fallback);
}

std::string JsonReader::word(std::string_view key, const std::vector<std::string> &words, std::string_view fallback)
{
    std::string value = text(key, fallback);
    if (std::ranges::find(words, value) != words.end())
        return value;
    std::string choice;
    for (const std::string &word : words)
        choice += (choice.empty() ? "" : word == words.back() ? " or " : ", ") + inQuotes(word);
    throw JsonValueProblem(placeOf(key), inQuotes(value) + " is not known; it must be " + choice);
}

bool JsonReader::flag(std::string_view key)
{
    return asFlag(require(key), placeOf(key));
}

bool JsonReader::flag(std::string_view key, bool fallback)
{
    const json::value *value = find(key);
    return value ? asFlag(*value, placeOf(key)) : fallback;
}

std::int64_t JsonReader::number(std::string_view key, NumberRange range)
{
    return asNumber(require(key), placeOf(key), range);
}

std::int64_t JsonReader::number(std::string_view key, NumberRange range, std::int64_t fallback)
{
    const json::value *value = find(key);
    return value ? asNumber(*value, placeOf(key), range) : fallback;
}

std::optional<double> JsonReader::seconds(std::string_view key)
{
    constexpr double oneDay = 86400;
    const json::value *value = find(key);
    if (!value)
        return std::nullopt;
    if (value->is_number()) {
        const auto number = value->to_number<double>();
        if (number >= 0 && number <= oneDay)
            return number;
    }
    complain(key, "must be a number of seconds from 0 to 86400");
}

std::vector<std::string> JsonReader::texts(std::string_view key)
{
    const json::value *value = find(key);
    if (!value)
        return {};
    const json::array *array = value->if_array();
    if (!array)
        complain(key, "must be a list of texts in square brackets");
    std::vector<std::string> result;
    for (const json::value &element : *array)
        result.push_back(asText(element, placeOf(key) + "[" + std::to_string(result.size()) + "]"));
    return result;
}

JsonReader JsonReader::object(std::string_view key)
{
    return {require(key), placeOf(key)};
}

std::optional<JsonReader> JsonReader::objectIfPresent(std::string_view key)
{
    const json::value *value = find(key);
    return value ? std::optional<JsonReader>(std::in_place, *value, placeOf(key)) : std::nullopt;
}

void JsonReader::eachMember(
    const std::function<void(const std::string &, const json::value &, const std::string &)> &visit)
{
    for (const auto &[key, value] : *m_object) {
        const std::string name(key);
        m_read.insert(name);
        visit(name, value, placeOf(name));
    }
}

void JsonReader::refuseUnread() const
{
    for (const auto &[key, value] : *m_object)
        if (!m_read.contains(std::string_view(key)))
            complain(std::string_view(key), "is not a key that is known here");
}

} // namespace veranox
