#include "Core/VeranoxOutputLines.h"
#include "Base/Process/Utf8.h"

namespace {

bool isLineEnd(QChar character)
{
    switch (character.unicode()) {
    case u'\n':
    case u'\v':
    case u'\f':
    case u'\r':
    case u'\u0085': // next line
    case u'\u2028': // line separator
    case u'\u2029': // paragraph separator
        return true;
    default:
        return false;
    }
}

} // namespace

QStringList veranoxOutputLines(const QByteArray &output)
{
    const QString text = decodedUtf8(output).value_or(QString());
    QStringList lines;
    for (auto begin = text.begin(); begin != text.end();) {
        const auto end = std::find_if(begin, text.end(), isLineEnd);
        if (const QString line = QStringView(begin, end).trimmed().toString(); !line.isEmpty())
            lines.append(line);
        begin = end == text.end() ? end : end + 1;
    }
    return lines;
}
