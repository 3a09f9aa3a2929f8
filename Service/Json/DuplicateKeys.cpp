#include "Service/Json/DuplicateKeys.h"

#include <boost/json/basic_parser_impl.hpp>
#include <cstdint>
#include <set>
#include <vector>

namespace veranox {

namespace json = boost::json;

namespace {

/// Notes the keys of the objects that are open; everything else in the text is of no interest.
struct KeyCollector {
    static constexpr std::size_t max_object_size = SIZE_MAX;
    static constexpr std::size_t max_array_size = SIZE_MAX;
    static constexpr std::size_t max_key_size = SIZE_MAX;
    static constexpr std::size_t max_string_size = SIZE_MAX;
    using Error = json::error_code;

    bool on_object_begin(Error &)
    {
        open.emplace_back();
        return true;
    }
    bool on_object_end(std::size_t, Error &)
    {
        open.pop_back();
        return true;
    }
    bool on_key_part(json::string_view part, std::size_t, Error &)
    {
        key += part;
        return true;
    }
    bool on_key(json::string_view part, std::size_t, Error &)
    {
        key += part;
        if (!open.back().insert(key).second && !duplicate)
            duplicate = key;
        key.clear();
        return true;
    }
    bool on_document_begin(Error &) { return true; }
    bool on_document_end(Error &) { return true; }
    bool on_array_begin(Error &) { return true; }
    bool on_array_end(std::size_t, Error &) { return true; }
    bool on_string_part(json::string_view, std::size_t, Error &) { return true; }
    bool on_string(json::string_view, std::size_t, Error &) { return true; }
    bool on_number_part(json::string_view, Error &) { return true; }
    bool on_int64(std::int64_t, json::string_view, Error &) { return true; }
    bool on_uint64(std::uint64_t, json::string_view, Error &) { return true; }
    bool on_double(double, json::string_view, Error &) { return true; }
    bool on_bool(bool, Error &) { return true; }
    bool on_null(Error &) { return true; }
    bool on_comment_part(json::string_view, Error &) { return true; }
    bool on_comment(json::string_view, Error &) { return true; }

    std::vector<std::set<std::string>> open;
    std::string key;
    std::optional<std::string> duplicate;
};

} // namespace

std::optional<std::string> findDuplicateKey(std::string_view text)
{
    json::basic_parser<KeyCollector> parser{json::parse_options()};
    json::error_code failure;
    parser.write_some(false, text.data(), text.size(), failure);
    return parser.handler().duplicate;
}

} // namespace veranox
