#include "API/VeranoxDecodingError.h"

using namespace Qt::StringLiterals;

VeranoxDecodingError::VeranoxDecodingError(QString place, QString expectation)
    : m_place(std::move(place)),
      m_expectation(std::move(expectation))
{
}

QString VeranoxDecodingError::localizedDescription() const
{
    const QString where = m_place.isEmpty() ? u"as a whole"_s : u"at "_s + m_place;
    return u"The answer of Veranox's local service could not be read: expected "_s + m_expectation + u' ' + where
        + u'.';
}
