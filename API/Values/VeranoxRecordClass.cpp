#include "API/Values/VeranoxRecordClass.h"

using namespace Qt::StringLiterals;

namespace {

// The node has not said yet where it will end up.
bool isUndecided(const QString &backendState)
{
    return backendState.isEmpty() || backendState == "NoState"_L1 || backendState == "Starting"_L1;
}

VeranoxRecordClass classOfActive(const QString &state, const QString &lastError)
{
    if (state == "error"_L1 || !lastError.isEmpty())
        return VeranoxRecordClass::failed;
    return state == "listening"_L1 ? VeranoxRecordClass::ready : VeranoxRecordClass::starting;
}

} // namespace

VeranoxRecordClass classOf(const VeranoxProfile &profile)
{
    if (profile.status.ok)
        return VeranoxRecordClass::ready;
    return isUndecided(profile.status.backendState) ? VeranoxRecordClass::starting : VeranoxRecordClass::failed;
}

VeranoxRecordClass classOf(const VeranoxTunnel &tunnel)
{
    return tunnel.disabled ? VeranoxRecordClass::disabled : classOfActive(tunnel.state, tunnel.lastError);
}

VeranoxRecordClass classOf(const VeranoxPublication &publication)
{
    if (publication.disabled)
        return VeranoxRecordClass::disabled;
    if (publication.state == "blocked"_L1)
        return VeranoxRecordClass::blocked;
    return classOfActive(publication.state, publication.lastError.trimmed());
}
