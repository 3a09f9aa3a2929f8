#pragma once
#include "Log/VeranoxRuntimeLogMetadata.h"
#include <QStringView>

// Reads the key=value pairs of a log line. A key stands at the start of the text or behind white space. Its value
// stands in double quotes, ending at the next one (no escapes), or runs up to the next white space; where a quote never
// closes, it is part of such a bare value. A key without a value is passed over; the first one with a value counts,
// even inside of another key's quotes. Pure functions, any thread, linear in the text.
struct VeranoxRuntimeLogMetadataParser {
    static VeranoxRuntimeLogMetadata parse(QStringView text);

    // The value of one key, as it stands.
    static std::optional<QString> field(QStringView name, QStringView text);
    // The same as a decimal number with an optional sign; absent for anything else and beyond 64 bits.
    static std::optional<qint64> intField(QStringView name, QStringView text);
    // The same as "true" or "false" in any case; absent for anything else.
    static std::optional<bool> boolField(QStringView name, QStringView text);
};
