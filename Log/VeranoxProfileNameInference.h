#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

// Tells which profile a log line concerns. Made once for a set of names and then asked for every line. Any thread.
class VeranoxProfileNameInference {
public:
    VeranoxProfileNameInference() = default;
    // Names in any order; a name that is there twice counts once.
    explicit VeranoxProfileNameInference(QStringList names);

    // The first name, in text order, that the line mentions without regard to case: as [name], profile=name,
    // profile="name", at the start of a word behind a blank, or in front of a full stop.
    std::optional<QString> inferredProfileName(QStringView line) const;

private:
    struct Candidate {
        QString name;
        QString lowered;
        QList<quint16> pairs; // of neighbouring characters, hashed: a line without one of them does not hold the name
    };
    QList<Candidate> m_candidates;
};
