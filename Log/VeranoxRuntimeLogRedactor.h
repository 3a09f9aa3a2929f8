#pragma once
#include <QString>

// Removes what nobody else may see from a text: control tokens and machine identifiers behind their names, Tailscale
// login addresses, and secrets in query strings. It also renames a field redaction_version of another program, so that
// it is never taken for the version of our own redaction.
struct VeranoxRuntimeLogRedactor {
    // The text without them; redacting again changes nothing. Halves of surrogate pairs may come out as U+FFFD. Pure,
    // any thread, linear in the text.
    static QString redact(const QString &text);
};
