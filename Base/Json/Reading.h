#pragma once
#include "Base/Json/Layout.h"
#include "Base/Json/Node.h"
#include <QMap>
#include <QStringList>
#include <expected>
#include <optional>

// Reads JSON values into C++ values. Nothing here throws: a failure goes up as a value that gathers its path on the
// way, so that a reply with ten thousand unreadable forgiving fields does not throw ten thousand times.
namespace json {

struct Misfit {
    QString place;
    QString expected;
    QString found;

    // The same misfit seen from the value that holds it.
    Misfit under(const QString &key) const;
    Misfit under(qsizetype index) const;
};

using Outcome = std::expected<void, Misfit>;

// The failure of a value that is of another kind than `expected`.
Outcome misfit(QLatin1StringView expected, Node found);

Outcome read(Node value, bool &into);
Outcome read(Node value, qint64 &into); // a whole number of 64 bits, however it is written
Outcome read(Node value, QString &into);

template <class Element> Outcome read(Node value, QList<Element> &into);
template <class Element> Outcome read(Node value, QMap<QString, Element> &into);
template <class Value> Outcome read(Node value, std::optional<Value> &into);
template <Record Type> Outcome read(Node value, Type &into);

template <class Element> Outcome read(Node value, QList<Element> &into)
{
    if (value.kind() != Node::Kind::list)
        return misfit(QLatin1StringView("a list"), value);
    const auto elements = value.elements();
    into.reserve(static_cast<qsizetype>(elements.size()));
    for (const Node element : elements) {
        const qsizetype index = into.size();
        if (const auto outcome = read(element, into.emplaceBack()); !outcome)
            return std::unexpected(outcome.error().under(index));
    }
    return {};
}

// Of a key that stands twice, the first holds, as it does in a record.
template <class Element> Outcome read(Node value, QMap<QString, Element> &into)
{
    if (value.kind() != Node::Kind::object)
        return misfit(QLatin1StringView("an object"), value);
    for (const auto &[key, node] : value.members()) {
        Element element;
        if (const auto outcome = read(node, element); !outcome)
            return std::unexpected(outcome.error().under(key));
        if (!into.contains(key))
            into.insert(key, std::move(element));
    }
    return {};
}

template <class Value> Outcome read(Node value, std::optional<Value> &into)
{
    return read(value, into.emplace());
}

template <class Type> Type blank();

template <class Type, class Member, class Default>
void takeDefault(Member &member, const Type &record, Default fallback)
{
    if constexpr (std::is_same_v<Default, Blank>)
        member = blank<Member>();
    else if constexpr (std::is_same_v<Default, const char *>)
        member = QString::fromLatin1(fallback);
    else if constexpr (std::is_member_object_pointer_v<Default>)
        member = record.*fallback;
    else if constexpr (std::is_invocable_v<Default>)
        member = fallback();
    else if constexpr (std::is_invocable_v<Default, const Type &>)
        member = fallback(record);
    else
        member = fallback;
}

template <class Type, class Field> Outcome readField(Node object, const Field &field, Type &record)
{
    auto &member = record.*field.member;
    QLatin1StringView key = field.keys.first;
    Node value = object.member(key);
    if (value.isAbsent() && !field.keys.second.isEmpty()) {
        key = field.keys.second;
        value = object.member(key);
    }
    if constexpr (Field::rule != Rule::required) {
        if (value.isAbsent()) {
            takeDefault(member, record, field.fallback);
            return {};
        }
    }
    const auto outcome = read(value, member);
    if (outcome)
        return {};
    if constexpr (Field::rule == Rule::forgiving) {
        takeDefault(member, record, field.fallback);
        return {};
    }
    return std::unexpected(outcome.error().under(QString(key)));
}

template <Record Type> Outcome readFields(Node object, Type &into)
{
    Outcome outcome;
    const auto readAll = [&](const auto &...field) {
        return ((outcome = readField(object, field, into)).has_value() && ...);
    };
    if (!std::apply(readAll, Layout<Type>::fields))
        return outcome;
    if constexpr (requires { Layout<Type>::complete(into); })
        Layout<Type>::complete(into);
    return {};
}

template <Record Type> Outcome read(Node value, Type &into)
{
    if (value.kind() != Node::Kind::object)
        return misfit(QLatin1StringView("an object"), value);
    return readFields(value, into);
}

template <class... Fields> consteval bool anyIsRequired(std::type_identity<const std::tuple<Fields...>>)
{
    return ((Fields::rule == Rule::required) || ...);
}

template <class Type>
concept HasDefault = !Record<Type> || !anyIsRequired(std::type_identity<decltype(Layout<Type>::fields)>());

// Zero, false or empty; of a record, what an empty object reads as.
template <class Type> Type blank()
{
    Type value{};
    if constexpr (Record<Type>) {
        static_assert(HasDefault<Type>, "a record with required fields has no default");
        std::ignore = readFields(Node(), value);
    }
    return value;
}

} // namespace json
