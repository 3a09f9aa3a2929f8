#pragma once
#include <QString>
#include <optional>

// What the caller of the log knows about its lines. An absent value is taken from the line itself where it says so in
// key=value form, and then inferred or left out.
struct VeranoxLogDetails {
    std::optional<QString> eventCode; // a name for programs, such as "app_startup_summary"
    std::optional<QString> level; // severity word in lower case: "info", "warn"
    std::optional<QString> component; // who speaks, such as "macos_app"
    std::optional<QString> correlationID; // absent: that of the line, else that of the running job
    std::optional<QString> profileName;
};
