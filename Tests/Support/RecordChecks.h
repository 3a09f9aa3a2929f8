#pragma once
#include "Base/Json/DecodingError.h"
#include "Base/Json/Json.h"
#include "Tests/Support/QtPrinters.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <optional>

// Checks that hold for every record, run over each key of a document in which each key has a value.
namespace checks {

inline QByteArray text(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

inline QJsonObject object(const QByteArray &json)
{
    const QJsonObject parsed = QJsonDocument::fromJson(json).object();
    EXPECT_FALSE(parsed.isEmpty()) << "the test's own JSON is broken";
    return parsed;
}

inline QJsonObject with(QJsonObject object, const QString &key, const QJsonValue &value)
{
    object.insert(key, value);
    return object;
}

inline QJsonObject without(QJsonObject object, const QString &key)
{
    object.remove(key);
    return object;
}

// The failure of decoding, or nothing if it succeeds.
template <class Value> std::optional<DecodingError> failure(const QByteArray &json)
{
    try {
        std::ignore = decodeRecord<Value>(json);
        return std::nullopt;
    } catch (const DecodingError &error) {
        return error;
    }
}

// One value of each JSON type that the given one is not; null is no type of its own.
inline QList<QJsonValue> valuesOfOtherTypes(const QJsonValue &value)
{
    QList<QJsonValue> others{true, 3.5, QStringLiteral("text"), QJsonArray{QJsonArray()}, QJsonObject()};
    others.removeIf([&](const QJsonValue &other) { return other.type() == value.type() && !other.isDouble(); });
    return others;
}

template <class Record> void expectAbsentAndNullAreTheSame(const QJsonObject &full)
{
    for (const QString &key : full.keys()) {
        const auto absent = decodeRecord<Record>(text(without(full, key)));
        EXPECT_EQ(absent, decodeRecord<Record>(text(with(full, key, QJsonValue::Null)))) << key.toStdString();
        EXPECT_NE(absent, decodeRecord<Record>(text(full))) << key.toStdString() << " is not read";
    }
}

template <class Record> void expectEachKeyIsRequired(const QJsonObject &full)
{
    for (const QString &key : full.keys()) {
        for (const QJsonObject &broken : {without(full, key), with(full, key, QJsonValue::Null)}) {
            const auto error = failure<Record>(text(broken));
            ASSERT_TRUE(error) << key.toStdString();
            EXPECT_EQ(error->place(), key);
        }
    }
}

template <class Record> void expectWrongTypesFail(const QJsonObject &full)
{
    for (const QString &key : full.keys()) {
        for (const QJsonValue &wrong : valuesOfOtherTypes(full.value(key))) {
            const auto error = failure<Record>(text(with(full, key, wrong)));
            ASSERT_TRUE(error) << text(with(full, key, wrong)).toStdString();
            EXPECT_EQ(error->place(), key);
            EXPECT_THAT(error->what(), testing::HasSubstr(key.toStdString()));
        }
    }
}

template <class Record> void expectUnknownAndMiscasedKeysAreIgnored(const QJsonObject &full)
{
    const auto plain = decodeRecord<Record>(text(full));
    QJsonObject extended = with(full, QStringLiteral("no such key"), QJsonArray{1, QJsonObject()});
    for (const QString &key : full.keys())
        extended.insert(u' ' + key, 7);
    EXPECT_EQ(plain, decodeRecord<Record>(text(extended)));
    for (const QString &key : full.keys()) {
        const QString shouted = key.toUpper() == key ? key.toLower() : key.toUpper();
        const auto error = failure<Record>(text(with(full, shouted, QJsonArray{1})));
        EXPECT_FALSE(error) << key.toStdString();
    }
}

} // namespace checks
