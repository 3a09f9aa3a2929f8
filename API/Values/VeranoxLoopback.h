#pragma once
#include "API/Values/VeranoxDraftError.h"
#include <QUrl>
#include <optional>

// The rules for addresses and ports that a person types. `label` is the field's name and begins each sentence of
// failure. Pure functions, any thread.
namespace VeranoxLoopback {

struct Endpoint {
    QString host; // without brackets, as typed
    int port = 0;

    bool operator==(const Endpoint &) const = default;
};

// An integer in decimal with an optional sign: ASCII digits only, no blanks, within 64 bits.
std::optional<qint64> decimalInteger(QStringView text);

// A port from 1 to 65535, or from 0 when `allowsZero`.
VeranoxDraftResult<int> port(const QString &text, const QString &label, bool allowsZero);

// host:port, split at the last colon, or [host]:port. Any host passes.
VeranoxDraftResult<Endpoint> endpoint(const QString &text, const QString &label);

// host:port with the host 127.0.0.1, localhost or ::1, in lower case and without surrounding blanks.
VeranoxDraftResult<QString> normalizedAddress(const QString &text, const QString &label);

// An http or https address whose host is 127.0.0.1, localhost or ::1, typed so and in no other spelling.
VeranoxDraftResult<QUrl> validatedURL(const QString &text, const QString &label);

} // namespace VeranoxLoopback
