#pragma once
#include <QMetaType>
#include <QString>

// The result, so far, of a profile's connection test.
struct VeranoxProfileTestFeedback {
    Q_GADGET
    Q_PROPERTY(QString profileName MEMBER profileName)
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString message MEMBER message)

public:
    enum class Kind { progress, success, warning, failure };
    Q_ENUM(Kind)

    QString profileName;
    Kind kind = Kind::progress;
    QString title;
    QString message;

    bool operator==(const VeranoxProfileTestFeedback &) const = default;
};
