#include "Base/Json/Writing.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

namespace json {

namespace {

bool standsForItself(const QByteArray &utf8)
{
    return std::ranges::none_of(utf8, [](char c) { return (c >= '\0' && c < ' ') || c == '"' || c == '\\'; });
}

} // namespace

void write(QByteArray &out, bool value)
{
    out += value ? "true" : "false";
}

void write(QByteArray &out, qint64 value)
{
    out += QByteArray::number(value);
}

void write(QByteArray &out, const QString &value)
{
    // Most texts are plain, and a document for each would cost several times as much.
    if (const QByteArray utf8 = value.toUtf8(); value.isValidUtf16() && standsForItself(utf8)) {
        out += '"';
        out += utf8;
        out += '"';
        return;
    }
    // Qt escapes text only within a document; the brackets round it are not part of the text.
    const QByteArray document = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    out += document.sliced(1, document.size() - 2);
}

} // namespace json
