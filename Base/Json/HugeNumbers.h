#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <QRegularExpression>
#include <QString>
#include <algorithm>
#include <cmath>

// JSON gives numbers no bound. A parser does, and refuses a whole text for one number beyond it, though nobody reads
// that number.
namespace json {

namespace huge_numbers {

inline bool isOfANumber(char character)
{
    constexpr QByteArrayView characters = "+-.0123456789eE";
    return characters.contains(character);
}

// Past the text that begins with this quotation mark.
inline const char *endOfText(const char *at, const char *end)
{
    for (++at; at != end && *at != '"'; ++at)
        if (*at == '\\' && at + 1 != end)
            ++at;
    return at == end ? end : at + 1;
}

inline QByteArray inBounds(const QByteArray &number)
{
    static const QRegularExpression grammar(
        QStringLiteral(R"(\A-?(?:0|[1-9][0-9]*+)(\.[0-9]++)?([eE][+-]?[0-9]++)?\z)"));
    const QString text = QString::fromLatin1(number);
    const auto match = grammar.match(text);
    if (!match.hasMatch())
        return number;
    if (std::isinf(text.toDouble()))
        return number.startsWith('-') ? "-1.7976931348623157e308" : "1.7976931348623157e308";
    bool fits = false;
    number.toLongLong(&fits);
    const bool isWhole = !match.hasCaptured(1) && !match.hasCaptured(2);
    return isWhole && !fits ? number + "e0" : number;
}

} // namespace huge_numbers

// The text with each number in bounds: a whole number beyond 64 bits is written as one that may have a fraction, and
// what is beyond a double becomes the largest double of its sign. All else stays as it is, faults too. Any thread.
inline QByteArray withNumbersInBounds(const QByteArray &text)
{
    using namespace huge_numbers;
    QByteArray bounded;
    bounded.reserve(text.size());
    const char *const end = text.constData() + text.size();
    for (const char *at = text.constData(); at != end;) {
        const char *next = at + 1;
        if (isOfANumber(*at)) {
            next = std::find_if_not(at, end, isOfANumber);
            bounded += inBounds(QByteArray(at, next - at));
        } else {
            next = *at == '"' ? endOfText(at, end) : next;
            bounded.append(at, next - at);
        }
        at = next;
    }
    return bounded;
}

} // namespace json
