#pragma once
#include "Service/Json/JsonReader.h"
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veranox {

/// A part of a query with its escapes resolved. Throws Refusal for an escape that is none and for what is no UTF-8.
std::string decodedQuery(std::string_view text);

/// The key=value pairs of a request's query. Keys that nobody asks for are nobody's concern. Each read throws Refusal
/// that names the key.
class QueryFields {
public:
    /// Throws Refusal for an escape that is none.
    explicit QueryFields(std::string_view query);

    /// The value, or nothing. Refuses a key that stands there twice.
    std::optional<std::string> text(std::string_view key) const;
    /// "true" or "false".
    bool flag(std::string_view key, bool fallback) const;
    std::int64_t number(std::string_view key, NumberRange range, std::int64_t fallback) const;

private:
    std::vector<std::pair<std::string, std::string>> m_fields;
};

} // namespace veranox
