#include "API/Client/VeranoxServerErrorTable.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace VeranoxServerErrorTable {

QString sentence(const QString &serverError, std::span<const Row> rows)
{
    const QString lowerCase = serverError.toLower();
    const auto row = std::ranges::find_if(
        rows, [&](const Row &row) { return lowerCase.contains(row.contains) && lowerCase.contains(row.alsoContains); });
    return row == rows.end() ? firstLine(serverError) : row->sentence.toString();
}

QString firstLine(const QString &text)
{
    return text.trimmed().section(u'\n', 0, 0, QString::SectionSkipEmpty);
}

QString message(const VeranoxAPIFailure &failure, const QString &serviceUnavailable,
    const std::function<QString(const QString &)> &forServerError)
{
    if (failure.kind == VeranoxAPIFailure::Kind::unavailable)
        return serviceUnavailable;
    if (failure.kind == VeranoxAPIFailure::Kind::refused)
        return forServerError(failure.text);
    return u"Veranox couldn't read the response from its local service. Restart Veranox and try again."_s;
}

} // namespace VeranoxServerErrorTable
