#pragma once
#include <QString>

// What tunnels and publications say alike. Pure functions, any thread.
namespace VeranoxDraftText {

// A name as it goes to the service: trimmed and in lower case.
QString normalName(const QString &typed);

// The label that a draft shows: nothing where it only repeats the name.
QString typedLabel(const QString &displayName, const QString &name);

} // namespace VeranoxDraftText
