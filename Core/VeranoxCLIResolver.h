#pragma once
#include "Core/VeranoxCommand.h"
#include <optional>

// Finds the `veranox` executable. Reads the file system, so not for hot paths; any thread.
struct VeranoxCLIResolver {
    // The command of the first candidate that may be run, without leading arguments; absent when none may.
    // `resourceDirectory` is where this application's own resources lie; empty when it has none.
    static std::optional<VeranoxCommand> resolve(const QString &resourceDirectory);

    // Where to look, best first: this application's own copy, then where package managers put one.
    static QStringList candidates(const QString &resourceDirectory);

    // The first path that may be run: absolute, an executable file, and writable by neither its group nor others.
    // A link counts as the file that it leads to.
    static std::optional<VeranoxCommand> firstTrusted(const QStringList &candidates);
};
