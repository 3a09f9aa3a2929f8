#pragma once
#include <QMetaType>
#include <QString>

// A state in a word, and how much of a person's attention it asks for.
struct VeranoxStatusBadge {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(Kind kind MEMBER kind)

public:
    enum class Kind { ok, warning, offline, error };
    Q_ENUM(Kind)

    QString title;
    Kind kind = Kind::offline;

    bool operator==(const VeranoxStatusBadge &) const = default;
};

Q_DECLARE_METATYPE(VeranoxStatusBadge)
