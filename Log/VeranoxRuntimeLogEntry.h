#pragma once
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QUuid>
#include <cstdint>
#include <optional>

// One line of the activity log.
struct VeranoxRuntimeLogEntry {
    QUuid id;
    QDateTime timestamp; // UTC, to the millisecond
    QString message; // one line, trimmed
    QString sessionID;
    QString componentInstanceID;
    std::optional<QString> correlationID;
    std::optional<QString> component;
    std::uint64_t sequence = 0; // counts from 1 within a session

    bool operator==(const VeranoxRuntimeLogEntry &) const = default;
};
