#include "Service/Json/JsonText.h"

#include "Service/Json/DuplicateKeys.h"
#include "Service/Json/JsonProblem.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <boost/json/error.hpp>
#include <boost/json/parse_options.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/stream_parser.hpp>

namespace veranox {

namespace json = boost::json;

namespace {

constexpr std::size_t longestKeyShown = 80;

std::string lineAndColumn(std::string_view text, std::size_t offset)
{
    const std::string_view before = text.substr(0, offset);
    const auto line = 1 + std::ranges::count(before, '\n');
    const std::size_t lineEnd = before.rfind('\n');
    const std::size_t column = offset - (lineEnd == std::string_view::npos ? 0 : lineEnd + 1) + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

void appendPretty(std::string &out, const json::value &value, std::size_t depth);

void appendLine(std::string &out, std::size_t depth)
{
    out.append("\n").append(2 * depth, ' ');
}

void appendPrettyObject(std::string &out, const json::object &object, std::size_t depth)
{
    out += '{';
    for (bool first = true; const auto &[key, member] : object) {
        out += first ? "" : ",";
        first = false;
        appendLine(out, depth + 1);
        out += compactJson(json::value(key));
        out += ": ";
        appendPretty(out, member, depth + 1);
    }
    appendLine(out, depth);
    out += '}';
}

void appendPrettyArray(std::string &out, const json::array &array, std::size_t depth)
{
    out += '[';
    for (bool first = true; const json::value &element : array) {
        out += first ? "" : ",";
        first = false;
        appendLine(out, depth + 1);
        appendPretty(out, element, depth + 1);
    }
    appendLine(out, depth);
    out += ']';
}

void appendPretty(std::string &out, const json::value &value, std::size_t depth)
{
    if (const json::object *object = value.if_object(); object && !object->empty())
        appendPrettyObject(out, *object, depth);
    else if (const json::array *array = value.if_array(); array && !array->empty())
        appendPrettyArray(out, *array, depth);
    else
        out += compactJson(value);
}

} // namespace

json::value parseJson(std::string_view text)
{
    json::stream_parser parser;
    json::error_code failure;
    const std::size_t consumed = parser.write_some(text, failure);
    if (failure == json::error::too_deep)
        throw JsonProblem(lineAndColumn(text, consumed), failure.message());
    if (failure)
        throw JsonSyntaxProblem(lineAndColumn(text, consumed), failure.message());
    if (const std::size_t rest = text.find_first_not_of(" \t\r\n", consumed); rest != std::string_view::npos)
        throw JsonSyntaxProblem(lineAndColumn(text, rest), "there is more text after the end of the JSON value");
    parser.finish(failure);
    if (failure)
        throw JsonSyntaxProblem(lineAndColumn(text, text.size()), "the text ends before the JSON value does");
    if (const std::optional<std::string> key = findDuplicateKey(text))
        throw JsonProblem("the key \"" + shortened(printable(*key), longestKeyShown) + "\"",
            "stands twice in one object, so one of the two would be lost");
    return parser.release();
}

std::string compactJson(const json::value &value)
{
    return toUtf8(json::serialize(value)); // what structures JSON is ASCII, so only texts can change
}

std::string prettyJson(const json::value &value)
{
    std::string text;
    appendPretty(text, value, 0);
    return text.append("\n");
}

} // namespace veranox
