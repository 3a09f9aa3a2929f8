#pragma once
#include <QString>
#include <optional>

// The identifiers of one run of the application. Both stand in every log record; the first goes with every request.
struct VeranoxDiagnosticSession {
    QString sessionID; // a random UUID, lower case, without braces
    QString componentInstanceID; // the same kind

    // A session with fresh identifiers.
    static VeranoxDiagnosticSession make();

    // A session with the given identifiers; one that is no UUID is replaced by a fresh one.
    static VeranoxDiagnosticSession with(const QString &sessionID, const QString &componentInstanceID);

    bool operator==(const VeranoxDiagnosticSession &) const = default;
};

// A fresh random UUID in lower case, without braces: the form of every identifier of this application.
QString makeVeranoxIdentifier();

// The identifier that ties the requests and log records of one operation together. It belongs to the running job and is
// inherited by the jobs that it starts.
struct VeranoxDiagnosticOperationContext {
    // The identifier bound to the running job, if any. Any thread.
    static std::optional<QString> correlationID();
};
