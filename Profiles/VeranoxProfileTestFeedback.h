#pragma once
#include <QMetaType>
#include <QString>

// The result, so far, of a profile's connection test.
struct VeranoxProfileTestFeedback {
    enum class Kind { progress, success, warning, failure };

    QString profileName;
    Kind kind = Kind::progress;
    QString title;
    QString message;

    bool operator==(const VeranoxProfileTestFeedback &) const = default;
};
