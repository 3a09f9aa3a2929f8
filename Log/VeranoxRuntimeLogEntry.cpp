#include "Log/VeranoxRuntimeLogEntry.h"
#include "Base/Json/Writing.h"
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Entry = VeranoxRuntimeLogEntry;

// Calls each(key, member, required) for every field until one call returns false; tells whether none did.
template <class AnyEntry, class Visitor> bool everyField(AnyEntry &entry, const Visitor &each)
{
    return each("id"_L1, entry.id, true) && each("timestamp"_L1, entry.timestamp, true)
        && each("profileName"_L1, entry.profileName, false) && each("message"_L1, entry.message, true)
        && each("schemaVersion"_L1, entry.schemaVersion, false)
        && each("eventRedactionVersion"_L1, entry.eventRedactionVersion, false)
        && each("redactionVersion"_L1, entry.redactionVersion, false) && each("sessionID"_L1, entry.sessionID, false)
        && each("correlationID"_L1, entry.correlationID, false) && each("requestID"_L1, entry.requestID, false)
        && each("componentInstanceID"_L1, entry.componentInstanceID, false)
        && each("configGenerationID"_L1, entry.configGenerationID, false) && each("sequence"_L1, entry.sequence, false)
        && each("attempt"_L1, entry.attempt, false) && each("eventCode"_L1, entry.eventCode, false)
        && each("level"_L1, entry.level, false) && each("component"_L1, entry.component, false)
        && each("operation"_L1, entry.operation, false) && each("outcome"_L1, entry.outcome, false)
        && each("failureStage"_L1, entry.failureStage, false) && each("retryable"_L1, entry.retryable, false)
        && each("httpStatus"_L1, entry.httpStatus, false) && each("durationMS"_L1, entry.durationMS, false);
}

constexpr qsizetype usualBytes = 512; // of a record

constexpr double twoToThe63 = 9223372036854775808.0;
constexpr double twoToThe64 = 2 * twoToThe63;

// ---- Values as JSON

using json::write;

void write(QByteArray &out, std::uint64_t value)
{
    out += QByteArray::number(value);
}

void write(QByteArray &out, const QUuid &value)
{
    write(out, value.toString(QUuid::WithoutBraces));
}

void write(QByteArray &out, const QDateTime &value)
{
    write(out, value.toMSecsSinceEpoch());
}

template <class Value> void writeMember(QByteArray &out, QLatin1StringView key, const Value &value)
{
    out += out.endsWith('{') ? "\"" : ",\"";
    out += QByteArrayView(key.data(), key.size());
    out += "\":";
    write(out, value);
}

// An absent value leaves out its key.
template <class Value> void writeMember(QByteArray &out, QLatin1StringView key, const std::optional<Value> &value)
{
    if (value)
        writeMember(out, key, *value);
}

// ---- Values from JSON: each tells whether the value is of its type.

bool read(const QJsonValue &value, QString &into)
{
    into = value.toString();
    return value.isString();
}

bool read(const QJsonValue &value, bool &into)
{
    into = value.toBool();
    return value.isBool();
}

bool read(const QJsonValue &value, qint64 &into)
{
    // Qt answers with the default for what is no whole number of 64 bits: two defaults tell it from such a number.
    into = value.toInteger(0);
    return into != 0 || value.toInteger(1) == 0;
}

bool read(const QJsonValue &value, std::uint64_t &into)
{
    qint64 number = 0;
    if (read(value, number)) {
        into = static_cast<std::uint64_t>(number);
        return number >= 0;
    }
    const double large = value.toDouble();
    if (large < twoToThe63 || large >= twoToThe64)
        return false;
    into = static_cast<std::uint64_t>(large);
    return true;
}

bool read(const QJsonValue &value, QUuid &into)
{
    const QString text = value.toString();
    into = QUuid::fromString(text);
    return into.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) == 0;
}

bool read(const QJsonValue &value, QDateTime &into)
{
    const double milliseconds = std::round(value.toDouble(twoToThe63)); // other writers may give fractions
    if (!(std::abs(milliseconds) < twoToThe63))
        return false;
    into = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds), Qt::UTC);
    return into.isValid();
}

template <class Value> bool read(const QJsonValue &value, std::optional<Value> &into)
{
    return read(value, into.emplace());
}

} // namespace

QByteArray VeranoxRuntimeLogEntry::toJson() const
{
    QByteArray out = "{";
    out.reserve(usualBytes);
    everyField(*this, [&out](QLatin1StringView key, const auto &member, bool) {
        writeMember(out, key, member);
        return true;
    });
    return out += '}';
}

std::optional<VeranoxRuntimeLogEntry> VeranoxRuntimeLogEntry::fromJson(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    Entry entry;
    const bool sound = everyField(entry, [&object](QLatin1StringView key, auto &member, bool required) {
        const QJsonValue value = object.value(key);
        const bool absent = value.isUndefined() || value.isNull();
        return absent ? !required : read(value, member);
    });
    return sound ? std::optional(std::move(entry)) : std::nullopt;
}
