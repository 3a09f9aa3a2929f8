#include "Log/VeranoxRuntimeLogLine.h"
#include "Base/Text/Characters.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool endsLine(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= u'\n' && code <= u'\r') || code == u'\u0085' || code == u'\u2028' || code == u'\u2029';
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
    const qsizetype end = characters::endOfFirst(maximumCharacters, text);
    return end == text.size() ? text : text.first(end) + u" \u2026 [truncated]"_s;
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
