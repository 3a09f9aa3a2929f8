#include "API/Client/VeranoxAPIFailure.h"

using namespace Qt::StringLiterals;

VeranoxAPIFailure VeranoxAPIFailure::refused(QString words, int status)
{
    return {.kind = Kind::refused, .status = status, .text = std::move(words)};
}

VeranoxAPIFailure VeranoxAPIFailure::undecodable(QString sentence)
{
    return {.kind = Kind::undecodable, .text = std::move(sentence)};
}

QString VeranoxAPIFailure::localizedDescription() const
{
    switch (kind) {
    case Kind::cancelled:
        return u"The request was cancelled."_s;
    case Kind::unavailable:
        return u"Veranox's local service is unavailable."_s;
    case Kind::badResponse:
        return u"Veranox's local service gave an answer that could not be understood."_s;
    case Kind::refused:
    case Kind::undecodable:
        return text;
    }
    Q_UNREACHABLE();
}
