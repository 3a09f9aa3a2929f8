#include "Base/Json/Writing.h"
#include <QJsonArray>
#include <QJsonDocument>

namespace json {

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
    // Qt escapes text only within a document; the brackets round it are not part of the text.
    const QByteArray document = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    out += document.sliced(1, document.size() - 2);
}

} // namespace json
