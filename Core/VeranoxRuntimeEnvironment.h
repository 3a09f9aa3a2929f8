#pragma once
#include "API/Client/VeranoxDiagnosticSession.h"
#include "Base/Process/ProcessEnvironment.h"

// What the service gets to see: this application's environment, with
//   PATH                  led by the folders of package managers, unless it already names the first of them
//   VERANOX_SITE_URL      the public site, unless set
//   VERANOX_SESSION_ID    the session's identifier
//   VERANOX_START_REASON  "app_managed"
ProcessEnvironment veranoxRuntimeEnvironment(
    ProcessEnvironment application, const VeranoxDiagnosticSession &diagnostics);
