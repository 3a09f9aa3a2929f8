#include "Core/VeranoxFeedbackIdentity.h"

VeranoxClientIdentity veranoxFeedbackIdentity(const VeranoxSessionIdentity &session)
{
    return {.appVersion = session.build.version, .os = session.systemName + u' ' + session.systemVersion};
}
