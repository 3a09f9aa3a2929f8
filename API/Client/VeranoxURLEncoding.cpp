#include "API/Client/VeranoxURLEncoding.h"
#include <QUrl>

QString percentEncodedForPath(const QString &name)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(name, "!$&'()*+,/:=@"));
}

QString percentEncodedForQuery(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "!$&'()*+,/:;=?@"));
}
