#pragma once
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace veranox {

/// A whole number's allowed range, both ends included.
struct NumberRange {
    std::int64_t least;
    std::int64_t most;
};

inline constexpr NumberRange portRange{1, 65535};
inline constexpr NumberRange portOrNoneRange{0, 65535};

/// Reads the members of one JSON object by name and knows where in the document it stands, so that every complaint
/// names its place. Each read throws JsonProblem when the member has the wrong type; without a fallback also when it is
/// missing. A null counts as missing. The value must outlive the reader.
class JsonReader {
public:
    /// `place` is the path of the value, empty for the whole document. Throws JsonProblem unless it is an object.
    JsonReader(const boost::json::value &value, std::string place);

    std::string text(std::string_view key);
    std::string text(std::string_view key, std::string_view fallback);
    /// A text that is one of the given words.
    std::string word(std::string_view key, const std::vector<std::string> &words, std::string_view fallback);
    bool flag(std::string_view key);
    bool flag(std::string_view key, bool fallback);
    std::int64_t number(std::string_view key, NumberRange range);
    std::int64_t number(std::string_view key, NumberRange range, std::int64_t fallback);
    /// A number of seconds from 0 to one day, fractions allowed.
    std::optional<double> seconds(std::string_view key);
    /// An array of texts; empty when missing.
    std::vector<std::string> texts(std::string_view key);
    JsonReader object(std::string_view key);
    std::optional<JsonReader> objectIfPresent(std::string_view key);

    /// Throws for the first of the keys that is missing.
    void requireAll(std::initializer_list<std::string_view> keys);

    /// The member as it is, or null when it is missing.
    const boost::json::value *find(std::string_view key);
    /// Calls `visit` with name, value and place of every member, in the order of the document.
    void eachMember(
        const std::function<void(const std::string &, const boost::json::value &, const std::string &)> &visit);
    /// Throws JsonProblem for the first member that nobody asked for: most likely a slip of the pen.
    void refuseUnread() const;

    bool has(std::string_view key) const;
    std::string placeOf(std::string_view key) const;
    /// Where the object stands, for a sentence: the path, or "the top level".
    std::string place() const;
    [[noreturn]] void complain(std::string_view key, std::string text) const;

private:
    const boost::json::value &require(std::string_view key);

    const boost::json::object *m_object;
    std::string m_place;
    std::set<std::string, std::less<>> m_read;
};

} // namespace veranox
