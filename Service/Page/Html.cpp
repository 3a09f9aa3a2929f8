#include "Service/Page/Html.h"

#include "Service/Text/Words.h"

namespace veranox {

namespace {

std::string_view escaped(char character)
{
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return "";
    }
}

} // namespace

Html &Html::add(HtmlLiteral literal)
{
    m_text += literal.markup();
    return *this;
}

Html &Html::add(const Html &piece)
{
    m_text += piece.m_text;
    return *this;
}

void Html::append(char character)
{
    const std::string_view entity = escaped(character);
    if (entity.empty())
        m_text += character;
    else
        m_text += entity;
}

Html &Html::text(std::string_view text)
{
    for (const char character : printable(text))
        append(character);
    return *this;
}

Html &Html::breakable(std::string_view address)
{
    constexpr std::string_view beginnings = ".:@";
    bool isInside = false; // nothing is gained by a break before the first character
    for (const char character : printable(address)) {
        if (isInside && beginnings.contains(character))
            m_text += "<wbr>";
        append(character);
        isInside = true;
    }
    return *this;
}

} // namespace veranox
