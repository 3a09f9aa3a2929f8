#include "API/Client/VeranoxAPIClientError.h"

using namespace Qt::StringLiterals;

QString VeranoxAPIClientError::localizedDescription() const
{
    switch (m_case) {
    case Case::localServiceUnavailable:
        break;
    }
    return u"Veranox's local service is unavailable."_s;
}
