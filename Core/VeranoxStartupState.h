#pragma once
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "API/Values/ServiceState.h"
#include "Log/VeranoxLogDetails.h"
#include <QList>

class VeranoxState;
struct VeranoxProfile;

// How things stand, as key=value fields in an order that readers of the log rely on: the service's state, then the
// records of each kind by class. The counts of a kind add up to the length of its list.
QString startupStateFields(const ServiceState &service, const QList<VeranoxProfile> &profiles,
    const QList<VeranoxTunnel> &tunnels, const QList<VeranoxPublication> &publications);
QString startupStateFields(const VeranoxState &state);

// What a record of the log says of itself that tells of a start.
VeranoxLogDetails startupEvent(const QString &code, bool isWarning, const QString &correlationID);
