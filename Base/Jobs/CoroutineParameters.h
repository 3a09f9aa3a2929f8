// What a coroutine may take as parameters, checked when it is compiled: a frame outlives the expression that made it,
// so whatever it refers to must live in it, or be an object with an identity.
#pragma once
#include <QByteArrayView>
#include <QStringView>
#include <initializer_list>
#include <span>
#include <string_view>
#include <type_traits>

namespace jobs::detail {

template <class T> struct IsView : std::false_type { };
template <> struct IsView<QStringView> : std::true_type { };
template <> struct IsView<QLatin1StringView> : std::true_type { };
template <> struct IsView<QUtf8StringView> : std::true_type { };
template <> struct IsView<QAnyStringView> : std::true_type { };
template <> struct IsView<QByteArrayView> : std::true_type { };
template <class C, class R> struct IsView<std::basic_string_view<C, R>> : std::true_type { };
template <class T, std::size_t N> struct IsView<std::span<T, N>> : std::true_type { };
template <class T> struct IsView<std::initializer_list<T>> : std::true_type { };

template <class T>
concept CallableClass = std::is_class_v<T> && requires { &T::operator(); };

template <bool IsFirst, class Parameter> constexpr void checkParameter()
{
    using Value = std::remove_cvref_t<Parameter>;
    static_assert(
        !IsView<Value>::value, "a coroutine takes text and ranges by value: a view dangles at the first wait");
    if constexpr (std::is_reference_v<Parameter>) {
        // The first may be the object of a member function.
        static_assert(IsFirst && std::is_lvalue_reference_v<Parameter>,
            "a coroutine takes its parameters by value: a reference dangles at the first wait");
        static_assert(!CallableClass<Value>,
            "a lambda is never a coroutine: its closure dies before the frame; "
            "write a static function and pass what it needs");
        if constexpr (!CallableClass<Value>)
            static_assert(!std::is_copy_constructible_v<Value>,
                "a coroutine takes values by value, and only objects with an identity have member coroutines");
    }
}

template <class First, class... Rest> constexpr bool checkParameters()
{
    checkParameter<true, First>();
    (checkParameter<false, Rest>(), ...);
    return true;
}

} // namespace jobs::detail
