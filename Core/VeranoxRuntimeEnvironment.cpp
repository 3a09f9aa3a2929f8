#include "Core/VeranoxRuntimeEnvironment.h"
#include "Core/VeranoxSiteAddress.h"

namespace {

// A program started from the desktop gets a short PATH, which lacks what the service looks for.
QByteArray searchPath(const QByteArray &inherited)
{
    QByteArray usual = "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";
    if (inherited.isEmpty())
        return usual;
    return inherited.contains("/opt/homebrew/bin") ? inherited : usual + ':' + inherited;
}

} // namespace

ProcessEnvironment veranoxRuntimeEnvironment(
    ProcessEnvironment application, const VeranoxDiagnosticSession &diagnostics)
{
    ProcessEnvironment environment = std::move(application);
    environment["PATH"] = searchPath(environment.value("PATH"));
    if (environment.value("VERANOX_SITE_URL").isEmpty())
        environment["VERANOX_SITE_URL"] = veranoxSiteAddress;
    environment["VERANOX_SESSION_ID"] = diagnostics.sessionID.toUtf8();
    environment["VERANOX_START_REASON"] = "app_managed";
    return environment;
}
