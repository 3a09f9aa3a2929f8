#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUuid>
#include <cstdint>
#include <optional>

// One line of the activity log: what the log page shows, and one JSON record of the log file. An absent value is a
// field that says nothing; an empty text is a field that was given as empty.
struct VeranoxRuntimeLogEntry {
    static constexpr qint64 currentSchemaVersion = 2;
    static constexpr qint64 currentRedactionVersion = 1;

    QUuid id; // random, one of its own for each entry
    QDateTime timestamp; // creation, UTC, to the millisecond
    std::optional<QString> profileName; // the routing profile that the line concerns
    QString message; // one redacted line, perhaps cut at its end
    std::optional<qint64> schemaVersion; // currentSchemaVersion on every new entry
    std::optional<qint64> eventRedactionVersion; // the redaction that was applied when the event was written
    std::optional<qint64> redactionVersion; // only read from lines of old versions, never set on a new entry
    std::optional<QString> sessionID;
    std::optional<QString> correlationID; // shared by the events of one operation
    std::optional<QString> requestID; // one request to the control API
    std::optional<QString> componentInstanceID;
    std::optional<QString> configGenerationID;
    std::optional<std::uint64_t> sequence; // counts from 1 within a session
    std::optional<qint64> attempt; // of an operation that is tried again
    std::optional<QString> eventCode; // a name for programs, such as "app_session_started"
    std::optional<QString> level; // severity word in lower case, such as "info"
    std::optional<QString> component; // who emitted it, such as "macos_app"
    std::optional<QString> operation;
    std::optional<QString> outcome;
    std::optional<QString> failureStage; // where an operation failed
    std::optional<bool> retryable; // whether the failed operation may be tried again
    std::optional<qint64> httpStatus; // of a control API call
    std::optional<qint64> durationMS; // milliseconds

    bool operator==(const VeranoxRuntimeLogEntry &) const = default;

    // The entry as one JSON object without line breaks; absent fields are left out, the timestamp is the number of
    // milliseconds since 1970 UTC. A sequence above 2^63 - 1 is rounded, as JSON numbers are in Qt. Any thread.
    QByteArray toJson() const;

    // The entry of such an object; nothing when the bytes are no object of this form: id, timestamp and message must be
    // there, a value of a wrong type counts as damage, null counts as absent, keys of no field are passed over.
    // Accepts any bytes. Any thread.
    static std::optional<VeranoxRuntimeLogEntry> fromJson(const QByteArray &json);
};
Q_DECLARE_TYPEINFO(VeranoxRuntimeLogEntry, Q_RELOCATABLE_TYPE);
