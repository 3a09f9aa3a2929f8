#include "Base/Json/DecodingError.h"

using namespace Qt::StringLiterals;

DecodingError::DecodingError(QString place, QString expected, QString found)
    : m_place(std::move(place)),
      m_expected(std::move(expected)),
      m_found(std::move(found))
{
}

QString DecodingError::localizedDescription() const
{
    const QString where = m_place.isEmpty() ? QString() : u" at "_s + m_place;
    return u"The answer of Veranox's local service could not be read: expected "_s + m_expected + where + u", found "_s
        + m_found + u'.';
}
