#pragma once
#include "API/Client/VeranoxAPIFailure.h"

// What a failed operation on a publication says to a person. Pure functions, any thread.
namespace VeranoxPublicationErrorMessage {

// One sentence for any failure; `serviceUnavailable` is the operation's own for a service that cannot be reached.
QString message(const VeranoxAPIFailure &failure, const QString &serviceUnavailable);

// One sentence for a refusal in the service's own words.
QString messageForServerError(const QString &text);

} // namespace VeranoxPublicationErrorMessage
