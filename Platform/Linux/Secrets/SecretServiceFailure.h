#pragma once
#include <QString>
#include <expected>

using GError = struct _GError; // NOLINT(bugprone-reserved-identifier): GLib's own name

// Why the keyring did not do what it was asked.
struct SecretServiceFailure {
    QString problem; // one sentence for a person
    bool isStale = false; // the keyring that was spoken to is gone; the one in its place may do it

    explicit SecretServiceFailure(const GError &error);

    // It was waited for long enough.
    static SecretServiceFailure unanswered();

    // Has GLib keep apart what otherwise reads as an unknown error. Before the first call; harmless when repeated.
    static void tellThemApart();

private:
    SecretServiceFailure() = default;
};

template <class T> using SecretServiceResult = std::expected<T, SecretServiceFailure>;
