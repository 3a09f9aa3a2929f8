#pragma once
#include "Base/Json/Layout.h"
#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <optional>

// Writes C++ values as compact JSON. Qt's own objects sort their keys; a record keeps the order of its table.
namespace json {

void write(QByteArray &out, bool value);
void write(QByteArray &out, qint64 value);
void write(QByteArray &out, const QString &value);

template <class Element> void write(QByteArray &out, const QList<Element> &value);
template <class Element> void write(QByteArray &out, const QMap<QString, Element> &value);
template <Record Type> void write(QByteArray &out, const Type &record);

template <class Value> void writeMember(QByteArray &out, const QString &key, const Value &value)
{
    if (!out.endsWith('{'))
        out += ',';
    write(out, key);
    out += ':';
    write(out, value);
}

// An absent value leaves out its key.
template <class Value> void writeMember(QByteArray &out, const QString &key, const std::optional<Value> &value)
{
    if (value)
        writeMember(out, key, *value);
}

template <class Element> void write(QByteArray &out, const QList<Element> &value)
{
    out += '[';
    for (const Element &element : value) {
        if (!out.endsWith('['))
            out += ',';
        write(out, element);
    }
    out += ']';
}

template <class Element> void write(QByteArray &out, const QMap<QString, Element> &value)
{
    out += '{';
    for (auto entry = value.begin(); entry != value.end(); ++entry)
        writeMember(out, entry.key(), entry.value());
    out += '}';
}

template <Record Type> void write(QByteArray &out, const Type &record)
{
    out += '{';
    std::apply([&](const auto &...field) { (writeMember(out, QString(field.keys.first), record.*field.member), ...); },
        Layout<Type>::fields);
    out += '}';
}

} // namespace json
