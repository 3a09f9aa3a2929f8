#include "Log/VeranoxRuntimeLogLine.h"
#include <QTextBoundaryFinder>
#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

bool endsLine(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= u'\n' && code <= u'\r') || code == u'\u0085' || code == u'\u2028' || code == u'\u2029';
}

// Where the character number `count` ends and another begins, looking at no more than the first `window` code units;
// nothing when they do not tell.
std::optional<qsizetype> endOfCharacter(qsizetype count, const QString &text, qsizetype window)
{
    const qsizetype firstUnknown = window < text.size() ? window - 1 : window; // the window may split its last one
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.constData(), window);
    qsizetype end = 0;
    while (count-- > 0) {
        end = finder.toNextBoundary();
        if (end < 0 || end >= firstUnknown)
            return std::nullopt;
    }
    return end;
}

} // namespace

QList<QStringView> VeranoxRuntimeLogLine::split(QStringView text)
{
    QList<QStringView> lines;
    for (const auto *at = text.begin(); at != text.end();) {
        const auto *const end = std::find_if(at, text.end(), endsLine);
        if (const QStringView line = QStringView(at, end).trimmed(); !line.isEmpty())
            lines.append(line);
        at = end == text.end() ? end : end + 1;
    }
    return lines;
}

QString VeranoxRuntimeLogLine::truncated(const QString &text)
{
    if (text.size() <= maximumCharacters)
        return text;
    // A character may be any number of code units, so the window grows until the cut lies well inside of it.
    for (qsizetype window = 2 * maximumCharacters;; window *= 2) {
        const qsizetype looked = std::min(window, text.size());
        if (const auto cut = endOfCharacter(maximumCharacters, text, looked))
            return text.first(*cut) + u" \u2026 [truncated]"_s;
        if (looked == text.size())
            return text;
    }
}

QString VeranoxRuntimeLogLine::component(QStringView line)
{
    if (line.startsWith(u"[PAC]"))
        return u"pac"_s;
    if (line.startsWith(u"[GUI]"))
        return u"local_service"_s;
    if (line.startsWith(u"[Router]"))
        return u"router"_s;
    if (line.startsWith(u"[APP]"))
        return u"macos_app"_s;
    return u"system"_s;
}
