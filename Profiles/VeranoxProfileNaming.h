#pragma once
#include "API/Records/VeranoxEditableConfig.h"
#include <optional>

// The number for a new profile's suggested name: one more than there are profiles, or the next whose name is free.
// `reportedProfiles` counts when no document is loaded.
int nextProfileIndex(const std::optional<VeranoxEditableConfig> &document, qsizetype reportedProfiles);

// The profile that a log line speaks of, if it names one: the first in ascending order among `names`, which may repeat.
std::optional<QString> inferredProfileName(const QString &line, QStringList names);
