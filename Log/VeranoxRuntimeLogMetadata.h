#pragma once
#include <QString>
#include <optional>

// What a log line says about itself in key=value form. A field that the line does not give, or gives in a form that
// can't be read, is absent.
struct VeranoxRuntimeLogMetadata {
    std::optional<QString> sessionID;
    std::optional<QString> correlationID;
    std::optional<QString> requestID;
    std::optional<QString> componentInstanceID;
    std::optional<QString> configGenerationID;
    std::optional<qint64> attempt;
    std::optional<QString> eventCode;
    std::optional<QString> level; // in lower case
    std::optional<QString> component;
    std::optional<QString> operation;
    std::optional<QString> outcome;
    std::optional<QString> failureStage;
    std::optional<bool> retryable;
    std::optional<qint64> httpStatus;
    std::optional<qint64> durationMS;

    bool operator==(const VeranoxRuntimeLogMetadata &) const = default;
};
