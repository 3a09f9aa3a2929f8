#pragma once
#include <QLatin1StringView>
#include <cstddef>
#include <tuple>
#include <type_traits>

// The vocabulary in which a record states how it looks as JSON:
//
//     template <>
//     struct json::Layout<Fruit> {
//         static constexpr std::tuple fields{
//             required("name", &Fruit::name),
//             field("colour", &Fruit::colour, "green"),
//             field({"weight", "Weight"}, &Fruit::weight),
//             forgiving("note", &Fruit::note)};
//     };
//
// The order is that of encoding. A Layout may add `static void complete(Fruit &)`, which runs after all fields are
// read.
namespace json {

template <class Record> struct Layout;

// The key of a field, and the key that is read where the first is absent or null. Encoding uses the first. ASCII only.
struct Keys {
    QLatin1StringView first;
    QLatin1StringView second;

    // NOLINTNEXTLINE(google-explicit-constructor): a table of fields writes its keys as plain text
    template <std::size_t N> consteval Keys(const char (&key)[N]) : first(key, N - 1) { }

    template <std::size_t N, std::size_t M>
    consteval Keys(const char (&key)[N], const char (&other)[M]) : first(key, N - 1),
                                                                   second(other, M - 1)
    {
    }
};

enum class Rule {
    lenient, // absent or null takes the default, a wrong type fails
    required, // absent or null fails too
    forgiving // whatever cannot be read takes the default
};

// The default of a field that names none: zero, false, empty, or what an empty object reads as.
struct Blank { };

template <Rule theRule, class Record, class Member, class Default> struct Field {
    static constexpr Rule rule = theRule;
    Keys keys;
    Member Record::*member;
    Default fallback; // a value, an ASCII text, another member of the record, or a function that makes the value,
                      // given nothing or the record with all that stands above it
};

template <class Record, class Member, class Default = Blank>
consteval auto field(Keys keys, Member Record::*member, Default fallback = {})
{
    return Field<Rule::lenient, Record, Member, Default>{keys, member, fallback};
}

template <class Record, class Member> consteval auto required(Keys keys, Member Record::*member)
{
    return Field<Rule::required, Record, Member, Blank>{keys, member, {}};
}

template <class Record, class Member> consteval auto forgiving(Keys keys, Member Record::*member)
{
    return Field<Rule::forgiving, Record, Member, Blank>{keys, member, {}};
}

template <class Type>
concept Record = std::is_class_v<Type> && requires { Layout<Type>::fields; };

} // namespace json
