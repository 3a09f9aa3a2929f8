#pragma once
#include "API/Client/VeranoxAPIFailure.h"
#include <QLatin1StringView>
#include <QString>
#include <functional>
#include <span>

// How the service's error texts become sentences for a person. Pure functions, any thread.
namespace VeranoxServerErrorTable {

// One row: the sentence for a text that contains both of these in lower case.
struct Row {
    QLatin1StringView contains;
    QStringView sentence;
    QLatin1StringView alsoContains{}; // empty is in every text
};

// The sentence of the first row that matches, else the text's first line. The words of the service overlap, so the
// order of the rows is part of what they say.
QString sentence(const QString &serverError, std::span<const Row> rows);

// What stands before the first line feed of the trimmed text; empty lines do not count.
QString firstLine(const QString &text);

// The sentence for any failure of an operation: `serviceUnavailable` when the service could not be reached, what
// `forServerError` makes of the service's own words, else that its reply could not be read.
QString message(const VeranoxAPIFailure &failure, const QString &serviceUnavailable,
    const std::function<QString(const QString &)> &forServerError);

} // namespace VeranoxServerErrorTable
