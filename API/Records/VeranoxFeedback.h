#pragma once
#include <QMetaType>
#include <QString>
#include <optional>

// What a user says of the application, with what the application says of itself.
struct VeranoxFeedback {
    QString message;
    QString kind;
    QString contact; // may be empty
    QString appVersion;
    QString os; // name and version, such as "macOS 14.5.0"

    bool operator==(const VeranoxFeedback &) const = default;
};

// Where the feedback can be read, if anywhere.
struct VeranoxFeedbackResult {
    std::optional<QString> url;

    bool operator==(const VeranoxFeedbackResult &) const = default;
};

Q_DECLARE_METATYPE(VeranoxFeedbackResult)
