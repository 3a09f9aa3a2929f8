#pragma once
#include <QList>
#include <QString>
#include <QStringView>

// The steps from a text to the lines of the activity log. Pure functions, any thread.
struct VeranoxRuntimeLogLine {
    // Longest line that is kept, in characters as a person counts them.
    static constexpr qsizetype maximumCharacters = 16384;

    // The pieces between line ends (LF, CR, VT, FF, NEL, LS, PS), trimmed, without the empty ones. They point into the
    // text.
    static QList<QStringView> split(QStringView text);

    // The text, or its first maximumCharacters characters and a mark that says so.
    static QString truncated(const QString &text);

    // The component that a line's prefix names: "[PAC]", "[GUI]", "[Router]", "[APP]"; "system" for any other start.
    static QString component(QStringView line);
};
