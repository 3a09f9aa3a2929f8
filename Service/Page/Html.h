#pragma once
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace veranox {

/// Markup that stands in the program's own text. Nothing that comes in from outside can become one, so nothing from
/// outside reaches a page without being escaped.
class HtmlLiteral {
public:
    // NOLINTNEXTLINE(google-explicit-constructor): written as a plain literal at each use
    consteval HtmlLiteral(const char *markup) : m_markup(markup) { }
    std::string_view markup() const { return m_markup; }

private:
    std::string_view m_markup;
};

/// A piece of an HTML document, put together from front to back.
class Html {
public:
    Html() = default;
    explicit Html(HtmlLiteral literal) { add(literal); }

    Html &add(HtmlLiteral literal);
    Html &add(const Html &piece);
    /// Any text, made harmless: it can neither open or close an element nor end the value of an attribute, nor break a
    /// line, turn the direction of writing or be no UTF-8.
    Html &text(std::string_view text);
    /// The same for an address, which a narrow column may break before each of its parts.
    Html &breakable(std::string_view address);
    Html &number(std::integral auto value) { return text(std::to_string(value)); }

    const std::string &string() const { return m_text; }
    std::string take() && { return std::move(m_text); }

private:
    void append(char character);

    std::string m_text;
};

} // namespace veranox
