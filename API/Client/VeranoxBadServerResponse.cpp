#include "API/Client/VeranoxBadServerResponse.h"

using namespace Qt::StringLiterals;

QString VeranoxBadServerResponse::localizedDescription() const
{
    return u"Veranox's local service gave an answer that could not be understood."_s;
}
