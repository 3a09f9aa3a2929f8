#include "API/Client/VeranoxDiagnosticSession.h"
#include "Base/Jobs/Job.h"
#include <QUuid>

namespace {

QString plainText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toLower();
}

QString validated(const QString &text)
{
    const QUuid parsed = QUuid::fromString(text);
    return parsed.isNull() ? makeVeranoxIdentifier() : plainText(parsed);
}

} // namespace

QString makeVeranoxIdentifier()
{
    return plainText(QUuid::createUuid());
}

VeranoxDiagnosticSession VeranoxDiagnosticSession::make()
{
    return with(makeVeranoxIdentifier(), makeVeranoxIdentifier());
}

VeranoxDiagnosticSession VeranoxDiagnosticSession::with(const QString &sessionID, const QString &componentInstanceID)
{
    return {.sessionID = validated(sessionID), .componentInstanceID = validated(componentInstanceID)};
}

std::optional<QString> VeranoxDiagnosticOperationContext::correlationID()
{
    return jobs::ambient();
}
