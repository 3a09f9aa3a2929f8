#pragma once
#include <QStringList>
#include <QUrl>

// How the service's executable is started.
struct VeranoxCommand {
    QUrl executableURL; // a local file with an absolute path
    QStringList leadingArguments; // what stands ahead of the subcommand

    bool operator==(const VeranoxCommand &) const = default;
};
