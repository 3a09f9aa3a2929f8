#pragma once
#include <QByteArray>
#include <QString>
#include <ostream>

// How a failed expectation shows Qt's texts: as text, not as bytes. Include it wherever such texts are compared.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
