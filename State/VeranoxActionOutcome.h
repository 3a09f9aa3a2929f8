#pragma once
#include <QString>
#include <optional>

// How an operation that a person asked for has ended, as one finished sentence where there is something to say.
struct VeranoxActionOutcome {
    enum class Kind {
        success,
        failure,
        cancelled // the job that waited for it was: nothing is said of it
    };

    Kind kind = Kind::failure;
    QString message = {};

    static VeranoxActionOutcome success(const QString &message = {}) { return {Kind::success, message}; }
    static VeranoxActionOutcome failure(const QString &message) { return {Kind::failure, message}; }
    static VeranoxActionOutcome cancelled() { return {Kind::cancelled, {}}; }

    bool isSuccess() const { return kind == Kind::success; }
    bool isFailure() const { return kind == Kind::failure; }
    bool isCancelled() const { return kind == Kind::cancelled; }

    // The same, with the name of what it happened to in front.
    VeranoxActionOutcome about(const QString &subject) const
    {
        return {kind, message.isEmpty() ? message : subject + QStringLiteral(": ") + message};
    }

    // What is to be shown where the person asked: absent after a success, empty when it was cancelled.
    std::optional<QString> problem() const { return isSuccess() ? std::nullopt : std::optional(message); }

    bool operator==(const VeranoxActionOutcome &) const = default;
};
