#pragma once
#include <QString>
#include <optional>

// Where the service leaves the token that proves the right to write: Veranox/control.token in the user's
// application-support directory, for which a relative path in the environment is ignored. Empty when there is no such
// directory. Creates nothing.
QString defaultControlTokenPath();

// The token in that file, without white space around it. Nothing when the file is missing, empty, no regular file, no
// UTF-8, longer than 4 KiB, or holds a control character, which no header can carry. Blocks; any thread.
std::optional<QString> readControlToken(const QString &path);
