#include "API/Values/VeranoxDraftError.h"

VeranoxDraftError::VeranoxDraftError(QString text) : message(std::move(text)) { }

QString VeranoxDraftError::localizedDescription() const
{
    return message;
}

std::unexpected<VeranoxDraftError> draftError(const QString &message)
{
    return std::unexpected(VeranoxDraftError(message));
}
