#include "API/Json/Codec.h"
#include <QJsonDocument>

using namespace Qt::StringLiterals;

QJsonValue json::parse(const QByteArray &text)
{
    if (text.isEmpty())
        throw VeranoxDecodingError({}, u"JSON"_s, u"nothing"_s);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw VeranoxDecodingError(
            u"byte "_s + QString::number(error.offset), u"JSON"_s, u"a fault ("_s + error.errorString() + u')');
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}
