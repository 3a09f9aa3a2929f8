#pragma once
#include "API/Client/VeranoxAPIClient.h"
#include "Log/VeranoxSessionIdentity.h"

// What the service is told of this program when a person sends feedback. Any thread.
VeranoxClientIdentity veranoxFeedbackIdentity(const VeranoxSessionIdentity &session);
