#pragma once
#include <QMetaType>
#include <QString>

// A state in a word, and how much of a person's attention it asks for.
struct VeranoxStatusBadge {
    enum class Kind { ok, warning, offline, error };

    QString title;
    Kind kind = Kind::offline;

    bool operator==(const VeranoxStatusBadge &) const = default;
};

Q_DECLARE_METATYPE(VeranoxStatusBadge)
